#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/AsyncProcessor.h"
#include "orv/log/MultiProcessor.h"
#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"
#include "tests/support/Processes.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <sstream>
#include <thread>

#include <sys/resource.h>

namespace orv::log {
namespace {

using io::FileOutputStream;
using orv::test::ForkedChild;
using orv::test::TemporaryFolder;

const std::string LINE = "-------------------------\n";

Reference<ILogProcessor> writerTo(const Reference<FileOutputStream>& bytes)
{
    const auto text = makeReference<io::OutputStreamWriter>(bytes.get(), u"UTF-8", 0x4000);
    return BasicLogWriter::create(text.get());
}
Reference<ILogProcessor> writerTo(const String& path, std::uint32_t mode)
{
    return writerTo(makeReference<FileOutputStream>(path, mode));
}

Reference<Logger> loggerTo(const Reference<ILogProcessor>& processor)
{
    auto logger = Logger::create();
    logger->addProcessor(processor.get());
    return logger;
}

TEST(LogFile, holdsWhatWasLoggedWhenTheProcessIsKilled)
{
    const std::string whole = "level=1\ntext=first\n" + LINE + "level=2\ntext=last words\n" + LINE;
    for (const std::uint32_t mode :
         {FileOutputStream::TRUNC,
          FileOutputStream::LOCK | FileOutputStream::ATEND | FileOutputStream::KEEPCLOSED}) {
        const TemporaryFolder folder;
        ForkedChild child([&] {
            const auto logger = loggerTo(writerTo(folder.file(u"log.txt"), mode));
            logger->log(1, u"first");
            logger->log(2, u"last words");
            ::raise(SIGKILL);
            return 0;
        });
        EXPECT_EQ(child.exitCode(), -1);
        EXPECT_EQ(folder.read("log.txt"), whole);
    }
}

// A file that is kept closed is made anew by the next entry; one that is held open goes on without
// its name until it is opened again.
TEST(LogFile, isDeletedUnderItsWriter)
{
    for (const std::uint32_t mode : {FileOutputStream::ATEND, FileOutputStream::APPEND,
                                     FileOutputStream::KEEPCLOSED | FileOutputStream::ATEND,
                                     FileOutputStream::KEEPCLOSED | FileOutputStream::APPEND}) {
        SCOPED_TRACE(mode);
        const TemporaryFolder folder;
        const auto bytes = makeReference<FileOutputStream>(folder.file(u"log.txt"), mode);
        const auto logger = loggerTo(writerTo(bytes));
        logger->log(1, u"lost");
        const auto size = bytes->getSize();
        std::filesystem::remove(folder.path() / "log.txt");
        logger->log(2, u"next");
        const std::string next = "level=2\ntext=next\n" + LINE;
        const bool keptClosed = (mode & FileOutputStream::KEEPCLOSED) != 0;
        EXPECT_EQ(folder.read("log.txt"), keptClosed ? next : "");
        EXPECT_EQ(bytes->getSize(), keptClosed ? size : 2 * size);
        bytes->close();
        bytes->open();
        logger->log(2, u"next");
        EXPECT_EQ(folder.read("log.txt"), keptClosed ? next + next : next);
    }
}

// The file may grow to a limit that falls into the second entry, and later beyond it.
TEST(LogFile, thatFillsUpReportsItAndHoldsNoTornEntry)
{
    const std::string first = "level=1\ntext=fits\n" + LINE;
    const std::string whole =
        first + "level=2\ntext=does not fit\n" + LINE + "level=3\ntext=fits again\n" + LINE;
    for (const std::uint32_t mode :
         {FileOutputStream::TRUNC, FileOutputStream::ATEND, FileOutputStream::APPEND,
          FileOutputStream::LOCK | FileOutputStream::ATEND}) {
        const TemporaryFolder folder;
        ForkedChild child([&] {
            ::signal(SIGXFSZ, SIG_IGN);
            const auto logger = loggerTo(writerTo(folder.file(u"log.txt"), mode));
            logger->log(1, u"fits");
            rlimit limit{60, RLIM_INFINITY};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            if (io::test::codeThrownBy([&] { logger->log(2, u"does not fit"); }) == 0) return 1;
            if (folder.read("log.txt") != first) return 2;
            limit.rlim_cur = RLIM_INFINITY;
            ::setrlimit(RLIMIT_FSIZE, &limit);
            logger->log(3, u"fits again");
            return 0;
        });
        EXPECT_EQ(child.exitCode(), 0) << mode;
        EXPECT_EQ(folder.read("log.txt"), whole) << mode;
    }
}

TEST(LogFile, isWrittenOnWhileTheProcessForks)
{
    const TemporaryFolder folder;
    std::atomic<bool> isOver{false};
    std::atomic<int> written{0};
    int logged[2] = {};
    {
        const auto ends = MultiProcessor::create();
        ends->addProcessor(writerTo(folder.file(u"log.txt"), FileOutputStream::APPEND).get());
        ends->addProcessor(test::calling([&](const ILogEntry&) { ++written; }).get());
        const auto queued = AsyncProcessor::create(ends.get(), 2);
        const auto log = [&](ILogProcessor* processor, int writer) {
            const auto logger = Logger::create();
            logger->enableField(u"timestamp", true);
            logger->addProcessor(processor);
            for (; !isOver; ++logged[writer]) {
                logger->log(writer, u"x");
                while (!isOver && logged[writer] > written + 100) std::this_thread::yield();
            }
        };
        std::jthread synchronous(log, ends.get(), 0);
        std::jthread asynchronous(log, queued.get(), 1);
        for (int forked = 0; forked < 1000 / orv::test::SLOWNESS; ++forked) {
            const pid_t child = ::fork();
            if (child == 0 && forked % 10 == 0) ::execl("/bin/true", "true", nullptr);
            if (child == 0) ::_exit(0);
            ASSERT_GT(child, 0);
            int status = -1;
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            ASSERT_EQ(status, 0);
        }
        isOver = true;
    }
    ASSERT_TRUE(orv::test::awaitTrue([&] { return written == logged[0] + logged[1]; }));
    std::int32_t found[2] = {};
    std::istringstream in(folder.read("log.txt"));
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("level=")) ++found[line.back() - '0'];
    }
    EXPECT_EQ(found[0], logged[0]);
    EXPECT_EQ(found[1], logged[1]);
}

} // namespace
} // namespace orv::log
