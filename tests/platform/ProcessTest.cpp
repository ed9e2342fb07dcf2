#include "platform/files.h"
#include "platform/orvcore.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr ORVResult notFound = ORVMakeResult(0x80070002u);
constexpr ORVResult stillRunning = ORVMakeResult(0x80070103u);

std::string readAll(ORVHandle file)
{
    std::string text;
    char buffer[512];
    std::int32_t got = 0;
    while (orvcore::readFile(file, buffer, sizeof buffer, &got) == S_OK && got > 0) {
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}

/// How a child is started; what is null stays as it is for ORVProcessCreate().
struct Start {
    const char16_t* program = nullptr;
    const char16_t* commandLine = nullptr;
    const char16_t* folder = nullptr;
    const char16_t* const* environment = nullptr;
};

class Child {
public:
    explicit Child(const Start& start)
        : m_created(ORVProcessCreate(start.program, start.commandLine, start.folder,
                                     start.environment, 0, &m_process, &m_streams))
    {
    }
    ~Child()
    {
        if (m_process != ORV_NO_HANDLE) ORVProcessDetach(m_process);
        closeInput();
        if (m_streams.output != ORV_NO_HANDLE) ORVFileClose(m_streams.output);
        if (m_streams.error != ORV_NO_HANDLE) ORVFileClose(m_streams.error);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    ORVResult created() const { return m_created; }
    ORVHandle process() const { return m_process; }
    const ORVStandardHandles& streams() const { return m_streams; }

    void closeInput()
    {
        if (m_streams.input != ORV_NO_HANDLE) ORVFileClose(m_streams.input);
        m_streams.input = ORV_NO_HANDLE;
    }
    std::int32_t join()
    {
        std::int32_t exitCode = -99;
        EXPECT_EQ(ORVProcessJoin(m_process, &exitCode), S_OK);
        m_process = ORV_NO_HANDLE;
        return exitCode;
    }
    ORVResult tryJoin(std::int32_t* exitCode)
    {
        const ORVResult result = ORVProcessGetExitCode(m_process, exitCode);
        if (result >= 0) m_process = ORV_NO_HANDLE;
        return result;
    }
    std::string output() const { return readAll(m_streams.output); }
    std::string errors() const { return readAll(m_streams.error); }

private:
    ORVHandle m_process = ORV_NO_HANDLE;
    ORVStandardHandles m_streams{};
    ORVResult m_created;
};

TEST(Process, talksThroughItsThreeStreams)
{
    Child child({u"/bin/sh", u"sh -c \"read line; echo got $line; echo bad >&2; exit 5\""});
    ASSERT_EQ(child.created(), S_OK);
    std::int32_t written = 0;
    EXPECT_EQ(orvcore::writeFile(child.streams().input, "hello\n", 6, &written), S_OK);
    EXPECT_EQ(child.output(), "got hello\n");
    EXPECT_EQ(child.errors(), "bad\n");
    EXPECT_EQ(child.join(), 5);
}

TEST(Process, cutsItsCommandLineAtBlanks)
{
    struct Row {
        const char16_t* commandLine;
        const char* output;
    };
    for (const Row& row : {
             Row{u"printf [%s] a  b\tc", "[a][b][c]"},
             Row{u"  printf [%s] \"a  b\" x\"y z\"w ", "[a  b][xy zw]"},
             Row{u"printf [%s] \"\" \"open end", "[][open end]"},
             Row{u"printf [%s] \u00E4\u20AC", "[\xC3\xA4\xE2\x82\xAC]"},
         }) {
        ::setenv("ORV_ENCODING", "UTF-8", 1);
        Child child({nullptr, row.commandLine});
        ASSERT_EQ(child.created(), S_OK) << row.output;
        EXPECT_EQ(child.output(), row.output);
        EXPECT_EQ(child.join(), 0);
        ::unsetenv("ORV_ENCODING");
    }
}

TEST(Process, reportsAProgramThatCannotBeRun)
{
    for (const Start& start :
         {Start{u"/no/such/program"}, Start{nullptr, u"no-such-program x"},
          Start{nullptr, u"/no/such/program"}, Start{u"/bin/sh", nullptr, u"/no/such/folder"}}) {
        const Child child(start);
        EXPECT_EQ(child.created(), notFound);
        EXPECT_EQ(child.process(), ORV_NO_HANDLE);
        EXPECT_EQ(child.streams().output, ORV_NO_HANDLE);
    }
    EXPECT_EQ(Child({}).created(), E_INVALIDARG);
    EXPECT_EQ(Child({nullptr, u"  "}).created(), E_INVALIDARG);
    EXPECT_EQ(Child({u"/etc/passwd"}).created(), ORVMakeResult(0x80070005u));
}

TEST(Process, startsInItsFolderWithItsEnvironment)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::u16string name = folder.u16string();
    const char16_t* const environment[] = {u"GREETING=good day", u"PATH=/bin", nullptr};
    Child child(
        {u"C:\\bin\\sh", u"sh -c \"echo [$GREETING][$HOME]; pwd -P\"", name.c_str(), environment});
    ASSERT_EQ(child.created(), S_OK);
    EXPECT_EQ(child.output(),
              "[good day][]\n" + std::filesystem::canonical(folder).string() + "\n");
    EXPECT_EQ(child.join(), 0);
}

TEST(Process, inheritsNoDescriptorAndNoSignalSettings)
{
    const int open = ::open("/dev/null", O_RDONLY);
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    Child child({u"/bin/sh", u"sh -c \"echo /proc/self/fd/*; grep -E 'SigBlk|SigIgn' "
                             u"/proc/self/status\""});
    ::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ASSERT_EQ(child.created(), S_OK);
    const std::string output = child.output();
    EXPECT_EQ(output.find("/proc/self/fd/" + std::to_string(open) + " "), std::string::npos)
        << output;
    EXPECT_NE(output.find("SigBlk:\t0000000000000000"), std::string::npos) << output;
    const std::size_t ignored = output.find("SigIgn:\t") + 8;
    const unsigned long long bits = std::stoull(output.substr(ignored, 16), nullptr, 16);
    EXPECT_EQ(bits & (1ull << (SIGPIPE - 1)), 0u) << output;
    EXPECT_EQ(child.join(), 0);
    ::close(open);
}

TEST(Process, tellsItsExitCodeOnceItHasEnded)
{
    Child child({nullptr, u"sh -c \"read line; kill -9 $$\""});
    ASSERT_EQ(child.created(), S_OK);
    std::int32_t exitCode = 0;
    EXPECT_EQ(child.tryJoin(&exitCode), stillRunning);
    child.closeInput();
    EXPECT_TRUE(orv::test::awaitTrue([&] { return child.tryJoin(&exitCode) == S_OK; }));
    EXPECT_EQ(exitCode, 128 + SIGKILL);
}

} // namespace
