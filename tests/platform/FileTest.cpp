#include "platform/files.h"

#include "tests/support/SignalStorm.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace {

using orv::test::SignalStorm;

constexpr std::uint32_t forReading = 0x80000000;
constexpr std::uint32_t forWriting = 0x40000000;
constexpr std::uint32_t create = 0x100;
constexpr std::uint32_t truncate = 0x200;

constexpr ORVResult failure(std::uint32_t number)
{
    return ORVMakeResult(0x80070000u + number);
}

ORVResult write(ORVHandle file, const std::string& bytes)
{
    std::int32_t written = 0;
    return orvcore::writeFile(file, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                              &written);
}

std::string read(ORVHandle file)
{
    std::string text;
    char buffer[7];
    std::int32_t got = 0;
    while (orvcore::readFile(file, buffer, sizeof buffer, &got) == S_OK && got > 0) {
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return text;
}

class Files : public testing::Test {
protected:
    // The path of a file in the test's folder, with backslashes.
    std::u16string path(const std::u16string& name) const
    {
        std::u16string whole = m_folder.path().u16string() + u"/" + name;
        for (char16_t& unit : whole) {
            if (unit == u'/') unit = u'\\';
        }
        return whole;
    }

    static ORVHandle open(const std::u16string& path, std::uint32_t flags)
    {
        ORVHandle file = 0;
        EXPECT_EQ(ORVFileOpen(path.c_str(), flags, 0700, &file), S_OK);
        return file;
    }

    void put(const std::u16string& name, std::uint32_t flags, const std::string& bytes) const
    {
        const ORVHandle file = open(path(name), flags);
        EXPECT_EQ(write(file, bytes), S_OK);
        EXPECT_EQ(ORVFileClose(file), S_OK);
    }

    orv::test::TemporaryFolder m_folder;
};

TEST_F(Files, pathsThatCannotBeOpenedFailWithTheirReason)
{
    put(u"file", forWriting | create, "");
    const std::u16string folder = path(u"");
    using Row = std::tuple<std::u16string, std::uint32_t, ORVResult>;
    for (const auto& [name, flags, result] :
         {Row{path(u"missing"), forReading, failure(2)},
          Row{path(u"missing\\file"), forWriting | create, failure(2)},
          Row{path(u"file\\below"), forReading, failure(3)}, Row{folder, forReading, failure(5)},
          Row{folder, forWriting | create, failure(5)}, Row{u"", forReading, failure(2)},
          Row{u"D:\\file", forReading, failure(3)}, Row{u"d:file", forReading, failure(3)},
          Row{u"\\\\server\\share\\file", forReading, failure(3)},
          Row{u"//server/share", forReading, failure(3)},
          Row{path(std::u16string(300, u'n')), forReading, failure(206)},
          Row{path(std::u16string(5000, u'n')), forWriting | create, failure(206)},
          Row{path(std::u16string(1500, u'\u4E00')), forReading, failure(206)},
          Row{path(u"half\xD83D"), forWriting | create, failure(123)},
          Row{path(u"file"), 0, E_INVALIDARG}, Row{path(u"file"), create, E_INVALIDARG},
          Row{path(u"file"), forReading | truncate, E_INVALIDARG}}) {
        ORVHandle file = 0;
        EXPECT_EQ(ORVFileOpen(name.c_str(), flags, 0700, &file), result)
            << testing::PrintToString(name);
        EXPECT_EQ(file, ORV_NO_HANDLE);
    }
}

TEST_F(Files, drivesAndSlashesLeadToOneFile)
{
    put(u"a\u00E9\U0001F600", forWriting | create, "found");
    EXPECT_TRUE(std::filesystem::exists(m_folder.path() / u"a\u00E9\U0001F600"));
    const std::u16string plain = m_folder.path().u16string() + u"/a\u00E9\U0001F600";
    for (const std::u16string& form : {plain, u"C:" + plain, u"c:" + path(u"a\u00E9\U0001F600")}) {
        const ORVHandle file = open(form, forReading);
        EXPECT_EQ(read(file), "found");
        EXPECT_EQ(ORVFileClose(file), S_OK);
    }
}

TEST_F(Files, whatIsLeftIsClamped)
{
    put(u"file", forWriting | create, "0123456789");
    const ORVHandle file = open(path(u"file"), forReading | forWriting);
    std::int64_t number = -1;
    EXPECT_EQ(orvcore::availableInFile(file), 10);
    EXPECT_EQ(orvcore::seekFileToEnd(file, &number), S_OK);
    EXPECT_EQ(number, 10);
    EXPECT_EQ(orvcore::truncateFile(file, 4), S_OK);
    EXPECT_EQ(orvcore::availableInFile(file), 0);
    EXPECT_EQ(orvcore::truncateFile(file, std::int64_t{3} << 30), S_OK);
    EXPECT_EQ(orvcore::availableInFile(file), INT32_MAX);
    EXPECT_EQ(ORVFileClose(file), S_OK);
    EXPECT_EQ(ORVFileGetSize(file, &number), failure(6));
}

struct Pipe {
    Pipe()
    {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        input = orvcore::fileHandleFromDescriptor(ends[0]);
        output = orvcore::fileHandleFromDescriptor(ends[1]);
    }
    ORVHandle input, output;
};

TEST(Pipes, aWriterWithoutReaderGetsAResultAndNoSignal)
{
    const Pipe pipe;
    EXPECT_EQ(ORVFileClose(pipe.input), S_OK);
    EXPECT_EQ(write(pipe.output, "lost"), failure(109));

    sigset_t set, before;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &set, &before);
    EXPECT_EQ(sigismember(&before, SIGPIPE), 0) << "the mask is put back";
    EXPECT_EQ(write(pipe.output, "lost"), failure(109));
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);

    pthread_kill(pthread_self(), SIGPIPE);
    EXPECT_EQ(write(pipe.output, "lost"), failure(109));
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 1) << "somebody else's signal stays";
    int signal = 0;
    sigwait(&set, &signal);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(ORVFileClose(pipe.output), S_OK);
}

TEST(Pipes, loseNothingInAStormOfSignals)
{
    for (const int mode : {0, O_NONBLOCK}) {
        const Pipe pipe;
        for (const ORVHandle end : {pipe.input, pipe.output}) {
            const int descriptor = orvcore::descriptorFromFileHandle(end);
            EXPECT_EQ(fcntl(descriptor, F_SETFL, mode), 0);
        }
        std::string sent(400000, '\0');
        for (std::size_t i = 0; i < sent.size(); ++i) sent[i] = static_cast<char>(i * 7 >> 3);

        std::string received;
        std::thread reader([&] {
            SignalStorm::awaitInterruptions(20); // the writer is waiting at the full pipe by then
            received = read(pipe.input);
        });
        std::int32_t written = 0;
        {
            const SignalStorm storm;
            EXPECT_EQ(orvcore::writeFile(pipe.output, sent.data(),
                                         static_cast<std::int32_t>(sent.size()), &written),
                      S_OK);
        }
        EXPECT_EQ(ORVFileClose(pipe.output), S_OK);
        reader.join();
        EXPECT_EQ(written, static_cast<std::int32_t>(sent.size()));
        EXPECT_TRUE(received == sent) << mode;
        EXPECT_EQ(ORVFileClose(pipe.input), S_OK);
    }
}

TEST(Errors, areTheNumbersThatHostsCompareWith)
{
    using Row = std::pair<std::int32_t, std::uint32_t>;
    for (const auto& [error, number] :
         {Row{ENOENT, 2}, Row{ENOTDIR, 3}, Row{EMFILE, 4}, Row{ENFILE, 4}, Row{EACCES, 5},
          Row{EPERM, 5}, Row{EISDIR, 5}, Row{EBADF, 6}, Row{ENOMEM, 14}, Row{EROFS, 19},
          Row{EINVAL, 87}, Row{EPIPE, 109}, Row{ENOSPC, 112}, Row{EBUSY, 170}, Row{EEXIST, 183},
          Row{EIO, 31}, Row{ENAMETOOLONG, 206}, Row{-1, 31}, Row{ETIMEDOUT, 1460}}) {
        EXPECT_EQ(ORVResultFromNative(error), failure(number)) << error;
    }
    EXPECT_EQ(ORVResultFromNative(0), S_OK);
}

} // namespace
