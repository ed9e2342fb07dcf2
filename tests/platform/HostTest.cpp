#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <dlfcn.h>

namespace {

// The folder of the core library, which is a shared library that is there for certain.
std::u16string coreFolder()
{
    Dl_info info{};
    EXPECT_NE(dladdr(reinterpret_cast<void*>(&ORVModuleLibOpen), &info), 0);
    const std::string path = info.dli_fname;
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    return {folder.begin(), folder.end()};
}

TEST(SharedLibrary, isFoundUnderItsShortNames)
{
    const std::u16string folder = coreFolder();
    std::u16string backslashed = u"C:" + folder;
    for (char16_t& unit : backslashed) unit = unit == u'/' ? u'\\' : unit;
    for (const std::u16string& name :
         {folder + u"liborvcore.so", folder + u"liborvcore", folder + u"orvcore",
          backslashed + u"orvcore", std::u16string(u"liborvcore.so.1")}) {
        ORVHandle library = 0;
        ASSERT_EQ(ORVModuleLibOpen(nullptr, name.c_str(), &library), S_OK)
            << testing::PrintToString(name);
        void* symbol = nullptr;
        EXPECT_EQ(ORVLibGetSymbol(library, u"ORVStrLenW", &symbol), S_OK);
        EXPECT_EQ(symbol, reinterpret_cast<void*>(&ORVStrLenW));
        EXPECT_EQ(ORVLibGetSymbol(library, u"noSuchSymbol", &symbol), ORVMakeResult(0x8007007F));
        EXPECT_EQ(symbol, nullptr);
        EXPECT_EQ(ORVModuleLibClose(nullptr, library), S_OK);
    }
}

TEST(SharedLibrary, thatIsNotThereIsReported)
{
    for (const char16_t* name :
         {u"", u"no-such-library", u"/no/such/library", u"D:\\x", u"\xD800"}) {
        ORVHandle library = 0;
        EXPECT_EQ(ORVModuleLibOpen(nullptr, name, &library), ORVMakeResult(0x8007007E));
        EXPECT_EQ(library, ORV_NO_HANDLE);
    }
    EXPECT_EQ(ORVModuleLibClose(nullptr, ORV_NO_HANDLE), E_INVALIDARG);
}

} // namespace
