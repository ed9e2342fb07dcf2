#include "orv/log/AsyncProcessor.h"

#include "orv/Integers.h"
#include "orv/collections/Set.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/LogEntry.h"
#include "orv/log/Logger.h"
#include "orv/log/XmlLogWriter.h"
#include "orv/log/quark/QuarkProcessor.h"
#include "orv/sync/Gate.h"
#include "tests/orv/io/Streams.h"
#include "tests/support/Processes.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

#include <sys/resource.h>

namespace orv::log {
namespace {

using io::FileOutputStream;
using io::test::RecordingWriter;
using io::test::refusalOf;
using namespace orv::test;

/// A processor that calls a function with the level of each entry.
struct Calling : ::orv::quark::Implements<Object, ILogProcessor> {
    explicit Calling(std::function<void(int)> toCall) : body(std::move(toCall)) {}
    void process(const ILogEntry* entry) override
    {
        body(dynamic_cast<const Integer32&>(*entry->getField(u"level")));
    }
    std::function<void(int)> body;
};

Reference<Logger> loggerTo(const Reference<ILogProcessor>& processor)
{
    auto logger = Logger::create();
    logger->addProcessor(processor.get());
    return logger;
}

TEST(MultiProcessor, callsInOrderOneEntryAtATimeAndStopsAtAFailure)
{
    const auto multi = MultiProcessor::create();
    const auto logger = loggerTo(multi);
    logger->log(u"dropped");
    EXPECT_THROW(logger->addProcessor(nullptr), ResultException);
    EXPECT_EQ(Logger::createProcessor(u"file"), nullptr);

    std::string calls;
    int inside = 0;
    for (const char letter : {'a', 'b', 'c'}) {
        multi->addProcessor(makeReference<Calling>([&, letter](int level) {
                                EXPECT_EQ(++inside, 1);
                                calls += letter;
                                std::this_thread::yield();
                                --inside;
                                if (level == letter) throw std::runtime_error("fails");
                            }).get());
    }
    EXPECT_THROW(logger->log('b', u"as far as b"), std::runtime_error);
    const auto work = [&] {
        for (int i = 0; i < 300; ++i) logger->log(u"to all");
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(calls.size(), 2u + 3 * 600);
    logger->addProcessor(multi.get());
    logger->log(u"twice");
    logger->setProcessor(makeReference<Calling>([&](int) { calls += 'd'; }).get());
    logger->log(u"to one alone");
    EXPECT_TRUE(calls.starts_with("ababcabc") && calls.ends_with("abcabcd"));
}

TEST(AsyncProcessor, keepsTheOrderAndWithoutThreadsAllForTheStop)
{
    const auto caller = std::this_thread::get_id();
    for (const std::int32_t threads : {0, 1}) {
        std::atomic<std::int32_t> next{0};
        const auto target = makeReference<Calling>([&](int level) {
            if (level == next && (std::this_thread::get_id() == caller) == (threads == 0)) ++next;
        });
        Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), threads));
        for (std::int32_t i = 0; i < 1000; ++i) {
            logger->log(i, u"");
            // So many fill a block of the queue; then the thread sleeps until it is woken.
            if (i % 126 == 125) std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
        EXPECT_TRUE(awaitTrue([&] { return next == threads * 1000; })) << next;
        logger = nullptr;
        EXPECT_TRUE(awaitTrue([&] { return target->GetRefCount() == 1; })) << "the thread is gone";
        EXPECT_EQ(next, 1000);
    }
}

// The thread is within the first entry all through the stop.
TEST(AsyncProcessor, atTheStopABusyThreadFinishesItsEntryAlone)
{
    sync::Gate begun, open;
    std::atomic<int> seen{0};
    const auto target = makeReference<Calling>([&](int level) {
        if (level == 1) {
            begun.open();
            open.wait();
        }
        seen += level;
    });
    Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), 1));
    logger->log(1, u"");
    begun.wait();
    logger->log(10, u"");
    logger->log(100, u"");
    logger = nullptr;
    EXPECT_EQ(seen, 110);
    open.open();
    EXPECT_TRUE(awaitTrue([&] { return target->GetRefCount() == 1; })) << "the thread is gone";
    EXPECT_EQ(seen, 111);
}

TEST(AsyncProcessor, aFailureEndsTheThreadAndTheRestWaitsForTheStop)
{
    const auto caller = std::this_thread::get_id();
    int byCaller = 0;
    const auto target = makeReference<Calling>([&](int level) {
        if (std::this_thread::get_id() == caller) ++byCaller;
        if (level % 3 == 0) throwResult(makeResult(0x80070100u + level));
    });
    Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), 1));
    for (int i = 0; i < 10; ++i) logger->log(i, u"");
    const Result code = refusalOf([&] { logger = nullptr; }).first;
    EXPECT_EQ(code, makeResult(byCaller == 10 ? 0x80070100 : 0x80070103));
    EXPECT_GE(byCaller, 9);
    const auto failTwice = [&] {
        const auto held = loggerTo(AsyncProcessor::create(target.get(), 0));
        held->log(3, u"");
        throwResult(E_NOT_FOUND);
    };
    EXPECT_EQ(refusalOf(failTwice).first, E_NOT_FOUND) << "goes on alone";
}

// Two producers run until the moment of the stop, which is their last reference's. Each entry has
// to be seen once; entries are known by their level.
void runToTheStop(std::int32_t threads, std::int32_t entries, bool fails)
{
    std::vector<std::atomic<int>> seen(static_cast<std::size_t>(2 * entries));
    const auto target = makeReference<Calling>([&](int level) {
        ++seen[static_cast<std::size_t>(level)];
        if (fails && level % 50 == 0) throw std::runtime_error("fails");
    });
    std::vector<Reference<ILogProcessor>> owned(2, AsyncProcessor::create(target.get(), threads));
    const auto produce = [&](std::size_t producer) {
        {
            const auto logger = Logger::create();
            logger->setProcessor(owned[producer].get());
            const auto first = static_cast<std::int32_t>(producer) * entries;
            for (std::int32_t i = 0; i < entries; ++i) logger->log(first + i, u"");
        }
        static_cast<void>(
            resultOf([&] { owned[producer] = nullptr; })); // perhaps that of a failure
    };
    {
        std::jthread first(produce, 0);
        std::jthread second(produce, 1);
    }
    ASSERT_TRUE(awaitTrue([&] { return target->GetRefCount() == 1; }));
    for (const auto& times : seen) ASSERT_EQ(times, 1) << "entry " << &times - seen.data();
}

TEST(AsyncProcessor, losesAndDoublesNothingInThousandsOfStops)
{
    const int rounds = 4000 / SLOWNESS;
    for (int round = 0; round < rounds; ++round) {
        runToTheStop(round % 4, 125, round % 8 >= 4);
        ASSERT_FALSE(HasFatalFailure());
    }
    for (const int threads : {0, 2}) runToTheStop(threads, 500'000 / SLOWNESS, false);
}

TEST(QuarkProcessor, passesEntriesToComponentsAndFailuresBack)
{
    struct Component : ::orv::quark::Implements<Object, quark::ILogProcessor> {
        Result Process(quark::ILogEntry* entry) override
        {
            ++calls;
            return entry->HasField(u"text") == 0 ? S_OK : makeResult(0x80071234u);
        }
        int calls = 0;
    };
    struct Foreign : ::orv::quark::Implements<Object, ILogEntry> {
        void setField(const String&, const Object*) override {}
        Reference<const Object> getField(const String&) const override { return nullptr; }
        bool hasField(const String&) const override { return false; }
        Reference<const collections::Set<String>> getFieldNames() const override { return nullptr; }
    };
    const auto component = makeReference<Component>();
    const auto processor = quark::QuarkProcessor::create(component.get());
    loggerTo(processor)->log(1, u"x");
    EXPECT_EQ(refusalOf([&] { processor->process(LogEntry::create().get()); }).first,
              makeResult(0x80071234));
    EXPECT_EQ(refusalOf([&] { processor->process(makeReference<Foreign>().get()); }).first,
              E_NOINTERFACE);
    EXPECT_EQ(component->calls, 2);
}

const std::u16string HEADER = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log>\n";
const std::string LINE = "-------------------------\n";

Reference<LogEntry> entryOf(const char16_t* name, const String& value)
{
    auto entry = LogEntry::create();
    entry->setField(name, makeReference<String>(value).get());
    return entry;
}

TEST(LogWriters, writeAnEntryInOnePieceAndFlushItOrNothing)
{
    const auto out = makeReference<RecordingWriter>();
    const Reference<ILogProcessor> writer = BasicLogWriter::create(out.get());
    writer->process(LogEntry::create().get());
    const std::u16string longText(5000, u'\u00E4');
    const auto entry = entryOf(u"one two", longText.c_str());
    entry->setField(u"", makeReference<String>((u"<&>" + longText).c_str()).get());
    writer->process(entry.get());
    entry->setField(u"", nullptr);
    EXPECT_EQ(refusalOf([&] { writer->process(entry.get()); }).first, makeResult(0x80070026));
    EXPECT_EQ(out->content, u"-------------------------\none two=" + longText + u"\n=<&>" +
                                longText + u"\n-------------------------\n");
    EXPECT_EQ(std::pair(out->writes, out->flushes), std::pair(2, 2));
    EXPECT_THROW(static_cast<void>(BasicLogWriter::create(nullptr)), ResultException);
}

TEST(LogWriters, ofXmlWriteADocument)
{
    const auto out = makeReference<RecordingWriter>();
    Reference<ILogProcessor> writer = XmlLogWriter::create(out.get());
    EXPECT_TRUE(out->content == HEADER && out->flushes == 0);
    loggerTo(writer)->log(3, String(u"a < b & {1}\0cut", 15));
    writer->process(LogEntry::create().get());
    const auto entry = entryOf(u"user id=\"7\" x", u"ann");
    writer->process(entry.get());
    EXPECT_EQ(out->flushes, 3);
    entry->setField(u"null", nullptr);
    EXPECT_EQ(refusalOf([&] { writer->process(entry.get()); }).first, makeResult(0x80070026));
    writer = nullptr;
    EXPECT_EQ(out->content, HEADER + u"  <entry>\n"
                                     u"    <level> 3 </level>\n"
                                     u"    <text> a < b & {1} </text>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"    <user id=\"7\" x> ann </user>\n"
                                     u"  </entry>\n"
                                     u"</log>\n");
    EXPECT_EQ(out->flushes, 4);
}

TEST(LogWriters, ofXmlReportAFailureAtTheEndUnlessThereIsAnother)
{
    const auto full = makeReference<FileOutputStream>(u"/dev/full", 0u);
    const auto text = makeReference<io::OutputStreamWriter>(full.get(), u"UTF-8", 100);
    Reference<ILogProcessor> writer = XmlLogWriter::create(text.get());
    EXPECT_EQ(refusalOf([&] { writer = nullptr; }).first, makeResult(0x80070070));
    writer = XmlLogWriter::create(text.get());
    const auto failTwice = [&] {
        const Reference<ILogProcessor> last = std::move(writer);
        throwResult(E_NOT_FOUND);
    };
    EXPECT_EQ(refusalOf(failTwice).first, makeResult(0x80070002));
}

TEST(LogWriters, callWhatSubclassesOverride)
{
    struct LineWriter : AbstractLogWriter {
        explicit LineWriter(io::Writer* out) : AbstractLogWriter(out) {}
        void flush() override { ++flushes; }
        String format(const ILogEntry* entry) override
        {
            return entry->getField(u"text")->toString() + u";";
        }
        int flushes = 0;
    };
    const auto out = makeReference<RecordingWriter>();
    const auto writer = makeReference<LineWriter>(out.get());
    for (const char16_t* text : {u"one", u"two"}) writer->process(entryOf(u"text", text).get());
    EXPECT_EQ(out->content, u"one;two;");
    EXPECT_EQ(writer->flushes - out->flushes, 2);
}

/// A logger to the file.
Reference<Logger> loggerTo(const Reference<FileOutputStream>& bytes)
{
    const auto text = makeReference<io::OutputStreamWriter>(bytes.get(), u"UTF-8", 0x4000);
    return loggerTo(BasicLogWriter::create(text.get()));
}

// A file that is kept closed is made anew by the next entry; one that is held open goes on without
// its name until it is opened again.
TEST(LogFile, isDeletedUnderItsWriter)
{
    const std::string next = "level=2\ntext=next\n" + LINE;
    for (const std::uint32_t mode : {FileOutputStream::ATEND, FileOutputStream::APPEND,
                                     FileOutputStream::KEEPCLOSED | FileOutputStream::ATEND,
                                     FileOutputStream::KEEPCLOSED | FileOutputStream::APPEND}) {
        const TemporaryFolder folder;
        const auto bytes = makeReference<FileOutputStream>(folder.file(u"log.txt"), mode);
        const auto logger = loggerTo(bytes);
        logger->log(1, u"lost");
        std::filesystem::remove(folder.path() / "log.txt");
        logger->log(2, u"next");
        const std::string now = (mode & FileOutputStream::KEEPCLOSED) != 0 ? next : "";
        EXPECT_EQ(folder.read("log.txt"), now) << mode;
        bytes->close();
        bytes->open();
        logger->log(2, u"next");
        EXPECT_EQ(folder.read("log.txt"), now + next) << mode;
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
                loggerTo(makeReference<FileOutputStream>(folder.file(u"log.txt"), mode));
            logger->log(1, u"fits");
            rlimit limit{60, RLIM_INFINITY};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const auto tooMuch = [&] { logger->log(2, u"does not fit"); };
            if (!failed(refusalOf(tooMuch).first)) return 1;
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
