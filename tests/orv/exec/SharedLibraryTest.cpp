#include "orv/exec/SharedLibrary.h"

#include "orv/Reference.h"
#include "tests/support/Refusals.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <dlfcn.h>

namespace orv::exec {
namespace {

TEST(SharedLibrary, isLoadedAsLongAsTheObjectLives)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "libsample.so";
    std::filesystem::create_symlink(ORV_SAMPLE_LIBRARY, file);
    const auto isLoaded = [&] {
        void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (handle != nullptr) ::dlclose(handle);
        return handle != nullptr;
    };
    String backslashes = folder.file(u"libsample.so");
    backslashes.translate(u'/', u'\\');
    for (const String& name : {folder.file(u"libsample.so"), backslashes, folder.file(u"libsample"),
                               folder.file(u"sample")}) {
        ASSERT_FALSE(isLoaded());
        SharedLibrary library(name.getData());
        EXPECT_TRUE(isLoaded());
        auto* const twice = reinterpret_cast<int (*)(int)>(library.getSymbol(u"orvSampleTwice"));
        EXPECT_EQ(twice(21), 42);
        EXPECT_EQ(library.getSymbol(u"orvSampleNothing"), nullptr);
    }
}

TEST(SharedLibrary, saysWhatIsMissing)
{
    const test::TemporaryFolder folder;
    folder.write("libtext.so", "no library");
    for (const String& name : {String(u"no-such-library"), folder.file(u"none.so"), String(),
                               folder.file(u"libtext.so")}) {
        EXPECT_EQ(test::refusalOf<ResultException>([&] { SharedLibrary(name.getData()); }),
                  test::Refusal(makeResult(0x8007007Eu), "Failed to open shared library."))
            << test::readable(test::units(name));
    }
    SharedLibrary library(u"libc.so.6");
    EXPECT_EQ(test::refusalOf<ResultException>([&] { library.getSymbol(u"noSuchSymbol"); }),
              test::Refusal(makeResult(0x8007007Fu), "Failed to get symbol."));
}

} // namespace
} // namespace orv::exec
