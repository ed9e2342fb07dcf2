#include "orv/exec/Process.h"

#include "orv/Exceptions.h"
#include "tests/orv/exec/Jobs.h"
#include "tests/support/Processes.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace orv::exec {
namespace {

using test::Refusal;
using test::refusalOf;

constexpr Result notFound = makeResult(0x80070002u);
constexpr Result brokenPipe = makeResult(0x8007006Du);

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
    const std::ptrdiff_t before = test::openDescriptors();
    EXPECT_EQ(refusalOf([] { Process(u"/no/such/program"); }), Refusal(notFound, ""));
    EXPECT_EQ(refusalOf([] { Process(nullptr, u"no-such-program x"); }), Refusal(notFound, ""));
    EXPECT_EQ(refusalOf([] { Process(u"/etc/passwd"); }), Refusal(makeResult(0x80070005u), ""));
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
    EXPECT_EQ(refusalOf([] { Process(nullptr, u"  "); }).first, E_INVALIDARG);
}

TEST(Process, startsInItsFolderWithItsEnvironmentAndNothingElse)
{
    const char16_t* const environment[] = {u"GREETING=good day", u"PATH=/bin", nullptr};
    const int open = ::open("/dev/null", O_RDONLY); // without O_CLOEXEC
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    Process child(u"C:\\bin\\sh",
                  u"sh -c \"echo [$GREETING][$HOME]; pwd; echo /proc/self/fd/*; "
                  u"grep -E 'SigBlk|SigIgn' /proc/self/status\"",
                  u"\\usr\\bin", environment);
    ::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const std::string output = readAll(child.getInputStream());
    EXPECT_TRUE(output.starts_with("[good day][]\n/usr/bin\n")) << output;
    EXPECT_EQ(output.find("/fd/" + std::to_string(open) + " "), std::string::npos) << output;
    EXPECT_NE(output.find("SigBlk:\t0000000000000000"), std::string::npos) << output;
    const std::size_t ignored = output.find("SigIgn:\t") + 8;
    const auto bits = std::stoull(output.substr(ignored, 16), nullptr, 16);
    EXPECT_EQ(bits & (1ull << (SIGPIPE - 1)), 0u) << output;
    ::close(open);
}

TEST(Process, isRunningOrJoined)
{
    Process child(nullptr, u"sh -c \"read line; exit 7\"");
    const Refusal notJoined(E_FAIL, "process has not been joined");
    EXPECT_FALSE(child.tryJoin());
    EXPECT_EQ(refusalOf([&] { child.getExitCode(); }), notJoined);
    child.endOutput();
    EXPECT_EQ(readAll(child.getInputStream()), "") << "ended";
    EXPECT_EQ(refusalOf([&] { child.getExitCode(); }), notJoined);
    EXPECT_TRUE(test::awaitTrue([&] { return child.tryJoin(); }));
    EXPECT_EQ(child.getExitCode(), 7);
    const Refusal joined(E_FAIL, "process already joined");
    EXPECT_EQ(refusalOf([&] { child.tryJoin(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.join(); }), joined);
    EXPECT_EQ(refusalOf([&] { child.getID(); }), Refusal(E_NOT_AVAILABLE, ""));
    EXPECT_EQ(Process::getCurrentID(), static_cast<std::uint32_t>(::getpid()));

    Process killed(nullptr, u"sh -c \"kill -9 $$\"");
    EXPECT_EQ(killed.join(), 128 + SIGKILL);
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
    EXPECT_EQ(refusalOf([&] { write(gone, "nobody reads"); }).first, brokenPipe);
}

TEST(Process, childrenHoldNothingOfEachOther)
{
    // A child with another's pipe would keep that one's cat waiting for its end.
    std::vector<Reference<Process>> children(24);
    std::vector<Reference<Thread>> starters;
    for (std::size_t first = 0; first < 4; ++first) {
        starters.push_back(startThread([&children, first] {
            for (std::size_t i = first; i < children.size(); i += 4) {
                children[i] = makeReference<Process>(u"/bin/cat");
            }
        }));
    }
    for (const auto& starter : starters) starter->join();
    for (const auto& child : children) {
        write(*child, "x");
        child->endOutput();
        EXPECT_EQ(readAll(child->getInputStream()), "x");
        EXPECT_EQ(child->join(), 0);
    }
}

} // namespace
} // namespace orv::exec
