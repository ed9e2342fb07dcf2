#include "orv/exec/Process.h"

#include "orv/Exceptions.h"
#include "orv/exec/SharedLibrary.h"
#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace orv::exec {
namespace {

using test::Refusal;
using test::refusalOf;

std::string readAll(const Reference<io::InputStream>& in)
{
    std::string text;
    char buffer[4096];
    for (std::int32_t got = 0; (got = in->read(buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}

void write(Process& process, const std::string& text)
{
    process.getOutputStream()->write(text.data(), static_cast<std::int32_t>(text.size()));
}

TEST(Process, talksToItsChild)
{
    Process sort(nullptr, u"sh -c \"sort; echo done >&2\"");
    write(sort, "pear\nfig\n");
    sort.getOutputStream()->flush();
    write(sort, "apple\n");
    sort.endOutput();
    sort.endOutput();
    EXPECT_EQ(refusalOf([&] { write(sort, "late"); }).first, makeResult(0x80070006u));
    EXPECT_EQ(readAll(sort.getInputStream()), "apple\nfig\npear\n");
    EXPECT_EQ(readAll(sort.getErrorStream()), "done\n");
    EXPECT_EQ(sort.join(), 0);
}

TEST(Process, thatCannotBeStartedIsAnExceptionAndLeavesNothingOpen)
{
    const auto refusal = [](const char16_t* program, const char16_t* commandLine) {
        return refusalOf([&] { Process(program, commandLine); });
    };
    const std::ptrdiff_t before = test::openDescriptors();
    EXPECT_EQ(refusal(u"/no/such/program", nullptr), Refusal(E_NOT_FOUND, ""));
    EXPECT_EQ(refusal(nullptr, u"no-such-program x"), Refusal(E_NOT_FOUND, ""));
    EXPECT_EQ(refusal(u"/etc/passwd", nullptr), Refusal(makeResult(0x80070005u), ""));
    EXPECT_EQ(refusal(nullptr, u"  "), Refusal(E_INVALIDARG, ""));
    {
        Process unread(u"C:\\bin\\sh", u"sh -c \"echo a; echo b >&2\"");
        Process half(u"/bin/cat");
        half.endOutput();
        EXPECT_EQ(readAll(half.getInputStream()), "");
    }
    EXPECT_EQ(test::openDescriptors(), before);
}

TEST(Process, cutsItsCommandLineAtBlanks)
{
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"printf [%s] a  b\tc", "[a][b][c]"},
        {u"  printf [%s] \"a  b\" x\"y z\"w ", "[a  b][xy zw]"},
        {u"printf [%s] \"\" \"open end", "[][open end]"},
    };
    for (const auto& [commandLine, output] : rows) {
        EXPECT_EQ(readAll(Process(nullptr, commandLine).getInputStream()), output);
    }
}

TEST(Process, startsInItsFolderWithItsEnvironmentAndNothingElse)
{
    const char16_t* const environment[] = {u"GREETING=good day", u"PATH=/bin", nullptr};
    const int open = ::open("/dev/null", O_RDONLY); // without O_CLOEXEC
    sigset_t all, before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    // The last line is the bit of SIGPIPE among the signals that are ignored.
    Process child(u"C:\\bin\\sh",
                  u"sh -c \"echo [$GREETING][$HOME]; pwd; echo /proc/self/fd/*; "
                  u"grep SigBlk /proc/self/status; "
                  u"echo $((0x$(sed -n s/SigIgn:.//p /proc/self/status) >> 12 & 1))\"",
                  u"\\usr\\bin", environment);
    ::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const std::string output = readAll(child.getInputStream());
    EXPECT_TRUE(output.starts_with("[good day][]\n/usr/bin\n")) << output;
    EXPECT_EQ(output.find("/fd/" + std::to_string(open) + " "), std::string::npos) << output;
    EXPECT_TRUE(output.ends_with("SigBlk:\t0000000000000000\n0\n")) << output;
    ::close(open);
}

TEST(Process, isRunningOrJoined)
{
    Process child(nullptr, u"sh -c \"read line; exit 7\"");
    EXPECT_FALSE(child.tryJoin());
    child.endOutput();
    EXPECT_EQ(readAll(child.getInputStream()), "") << "ended";
    const Refusal notJoined(E_FAIL, "process has not been joined");
    EXPECT_EQ(refusalOf([&] { child.getExitCode(); }), notJoined);
    EXPECT_TRUE(test::awaitTrue([&] { return child.tryJoin(); }));
    EXPECT_EQ(child.getExitCode(), 7);
    const Refusal joined(E_FAIL, "process already joined");
    EXPECT_EQ(refusalOf([&] { child.tryJoin(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.join(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.getID(); }), Refusal(E_NOT_AVAILABLE, ""));
    EXPECT_EQ(Process::getCurrentID(), static_cast<std::uint32_t>(::getpid()));
    EXPECT_EQ(Process(nullptr, u"sh -c \"kill -9 $$\"").join(), 128 + SIGKILL);
}

TEST(Process, keepsItsPipesAsLongAsTheirStreams)
{
    Reference<io::InputStream> in;
    {
        Process cat(u"/bin/cat");
        in = cat.getInputStream();
        EXPECT_EQ(in, cat.getInputStream());
        in->close();
        cat.getOutputStream()->close();
        write(cat, "still open");
    }
    EXPECT_EQ(readAll(in), "still open") << "and cat has read the end of its input";
    Process gone(nullptr, u"true");
    gone.join();
    EXPECT_EQ(refusalOf([&] { write(gone, "nobody reads"); }).first, makeResult(0x8007006Du));
}

TEST(Process, childrenHoldNothingOfEachOther)
{
    // A child with another's pipe would keep that one's cat waiting for its end.
    std::vector<Reference<Process>> children(24);
    const auto start = [&children](std::size_t first) {
        for (std::size_t i = first; i < children.size(); i += 2) {
            children[i] = makeReference<Process>(u"/bin/cat");
        }
    };
    std::thread other(start, 1);
    start(0);
    other.join();
    for (const auto& child : children) {
        write(*child, "x");
        child->endOutput();
        EXPECT_EQ(readAll(child->getInputStream()), "x");
        EXPECT_EQ(child->join(), 0);
    }
}

TEST(SharedLibrary, isLoadedAsLongAsTheObjectLivesOrSaysWhatIsMissing)
{
    const test::TemporaryFolder folder;
    const std::filesystem::path file = folder.path() / "libsample.so";
    std::filesystem::create_symlink(ORV_SAMPLE_LIBRARY, file);
    const auto isLoaded = [&] {
        void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
        return handle != nullptr && ::dlclose(handle) == 0;
    };
    String backslashes = folder.file(u"libsample.so");
    backslashes.translate(u'/', u'\\');
    for (const String& name : {backslashes, folder.file(u"libsample"), folder.file(u"sample")}) {
        ASSERT_FALSE(isLoaded());
        SharedLibrary library(name.getData());
        EXPECT_TRUE(isLoaded());
        auto* const twice = reinterpret_cast<int (*)(int)>(library.getSymbol(u"orvSampleTwice"));
        EXPECT_EQ(twice(21), 42);
        EXPECT_EQ(library.getSymbol(u"orvSampleNothing"), nullptr);
        EXPECT_EQ(refusalOf<ResultException>([&] { library.getSymbol(u"noSuchSymbol"); }),
                  Refusal(makeResult(0x8007007Fu), "Failed to get symbol."));
    }
    folder.write("libtext.so", "no library");
    for (const String& name : {String(u"no-such-library"), String(), folder.file(u"libtext.so")}) {
        EXPECT_EQ(refusalOf<ResultException>([&] { SharedLibrary(name.getData()); }),
                  Refusal(makeResult(0x8007007Eu), "Failed to open shared library."));
    }
}

} // namespace
} // namespace orv::exec
