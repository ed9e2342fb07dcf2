#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"
#include "tests/support/Processes.h"
#include "tests/support/TemporaryFolder.h"

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
Reference<Logger> loggerTo(const Reference<ILogProcessor>& processor)
{
    auto logger = Logger::create();
    logger->addProcessor(processor.get());
    return logger;
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
TEST(LogFile, thatFillsUpHoldsNoTornEntryAndWhatWasLoggedWhenTheProcessIsKilled)
{
    const std::string first = "level=1\ntext=fits\n" + LINE;
    const std::string all =
        first + "level=2\ntext=does not fit\n" + LINE + "level=3\ntext=fits again\n" + LINE;
    for (const std::uint32_t mode :
         {FileOutputStream::TRUNC, FileOutputStream::ATEND, FileOutputStream::APPEND,
          FileOutputStream::LOCK | FileOutputStream::ATEND,
          FileOutputStream::LOCK | FileOutputStream::ATEND | FileOutputStream::KEEPCLOSED}) {
        const TemporaryFolder folder;
        ForkedChild child([&] {
            ::signal(SIGXFSZ, SIG_IGN);
            const auto logger =
                loggerTo(writerTo(makeReference<FileOutputStream>(folder.file(u"log.txt"), mode)));
            logger->log(1, u"fits");
            rlimit limit{60, RLIM_INFINITY};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            if (io::test::codeThrownBy([&] { logger->log(2, u"does not fit"); }) == 0) return 1;
            if (folder.read("log.txt") != first) return 2;
            limit.rlim_cur = RLIM_INFINITY;
            ::setrlimit(RLIMIT_FSIZE, &limit);
            logger->log(3, u"fits again");
            return ::raise(SIGKILL);
        });
        EXPECT_EQ(child.exitCode(), -1) << mode;
        EXPECT_EQ(folder.read("log.txt"), all) << mode;
    }
}

} // namespace
} // namespace orv::log
