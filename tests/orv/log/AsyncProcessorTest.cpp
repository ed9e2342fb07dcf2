#include "orv/log/AsyncProcessor.h"

#include "orv/log/MultiProcessor.h"
#include "orv/log/quark/ILogEntry.h"
#include "orv/log/quark/QuarkProcessor.h"
#include "orv/sync/Gate.h"
#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"
#include "tests/support/Processes.h"
#include "tests/support/Sanitizers.h"

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

namespace orv::log {
namespace {

using orv::test::awaitTrue;
using test::calling;
using test::levelOf;

Reference<Logger> loggerTo(const Reference<AsyncProcessor>& processor)
{
    auto logger = Logger::create();
    logger->addProcessor(processor.get());
    return logger;
}

TEST(AsyncProcessor, keepsTheOrderAndWithoutThreadsAllForTheStop)
{
    const auto caller = std::this_thread::get_id();
    for (const std::int32_t threads : {0, 1}) {
        std::atomic<std::int32_t> next{0};
        const auto target = calling([&](const ILogEntry& entry) {
            const bool byCaller = std::this_thread::get_id() == caller;
            if (levelOf(entry) == next && byCaller == (threads == 0)) ++next;
        });
        Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), threads));
        for (std::int32_t i = 0; i < 1000; ++i) {
            logger->log(i, u"");
            // Now and then long enough for the thread to sleep until it is woken.
            if (i % 300 == 299) std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
        if (threads == 0) {
            EXPECT_EQ(next, 0);
            logger = nullptr;
        }
        EXPECT_TRUE(awaitTrue([&] { return next == 1000; })) << next;
    }
}

// The thread is within the first entry all through the stop.
TEST(AsyncProcessor, atTheStopABusyThreadFinishesItsEntryAlone)
{
    sync::Gate begun;
    sync::Gate open;
    std::atomic<int> seen[3] = {};
    const auto target = calling([&](const ILogEntry& entry) {
        const int level = levelOf(entry);
        if (level == 0) {
            begun.open();
            open.wait();
        }
        ++seen[level];
    });
    Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), 1));
    logger->log(0, u"");
    begun.wait();
    logger->log(1, u"");
    logger->log(2, u"");
    logger = nullptr;
    EXPECT_EQ(seen[0] + seen[1] * 10 + seen[2] * 100, 110);
    open.open();
    EXPECT_TRUE(awaitTrue([&] { return target->GetRefCount() == 1; })) << "the thread is gone";
    EXPECT_EQ(seen[0] + seen[1] * 10 + seen[2] * 100, 111);
}

TEST(AsyncProcessor, aFailureEndsTheThreadAndTheRestWaitsForTheStop)
{
    const auto caller = std::this_thread::get_id();
    int byCaller = 0;
    const auto target = calling([&](const ILogEntry& entry) {
        if (std::this_thread::get_id() == caller) ++byCaller;
        if (levelOf(entry) % 3 == 0) throwResult(makeResult(0x80070100u + levelOf(entry)));
    });
    Reference<Logger> logger = loggerTo(AsyncProcessor::create(target.get(), 1));
    for (int i = 0; i < 10; ++i) logger->log(i, u"");
    const std::uint32_t code = io::test::codeThrownBy([&] { logger = nullptr; });
    EXPECT_EQ(code, byCaller == 10 ? 0x80070100 : 0x80070103);
    EXPECT_GE(byCaller, 9);

    EXPECT_THROW(
        {
            const auto held = loggerTo(AsyncProcessor::create(target.get(), 0));
            held->log(3, u"");
            throw std::runtime_error("goes on alone");
        },
        std::runtime_error);
}

// Two producers run until the moment of the stop, which is their last reference's. Each entry has
// to be seen once; entries are known by their level.
void runToTheStop(std::int32_t threads, std::int32_t entries, bool fails)
{
    std::vector<std::atomic<int>> seen(static_cast<std::size_t>(2 * entries));
    const auto target = calling([&](const ILogEntry& entry) {
        ++seen[static_cast<std::size_t>(levelOf(entry))];
        if (fails && levelOf(entry) % 50 == 0) throw std::runtime_error("fails");
    });
    std::vector<Reference<ILogProcessor>> owned(2, AsyncProcessor::create(target.get(), threads));
    const auto produce = [&](std::size_t producer) {
        {
            const auto logger = Logger::create();
            logger->setProcessor(owned[producer].get());
            const auto first = static_cast<std::int32_t>(producer) * entries;
            for (std::int32_t i = 0; i < entries; ++i) logger->log(first + i, u"");
        }
        try {
            owned[producer] = nullptr;
        } catch (const std::runtime_error&) {
        }
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
    const int rounds = 4000 / orv::test::SLOWNESS;
    for (int round = 0; round < rounds; ++round) {
        runToTheStop(round % 4, 125, round % 8 >= 4);
        ASSERT_FALSE(HasFatalFailure());
    }
    for (const int threads : {0, 2}) runToTheStop(threads, 500'000 / orv::test::SLOWNESS, false);
}

/// A component's processor.
class ResultProcessor : public ::orv::quark::Implements<Object, quark::ILogProcessor> {
public:
    Result Process(quark::ILogEntry* entry) override
    {
        ++calls;
        return entry->HasField(u"text") == 0 ? S_OK : makeResult(0x80071234u);
    }

    int calls = 0;
};

TEST(QuarkProcessor, passesEntriesToComponentsAndFailuresBack)
{
    const auto target = makeReference<ResultProcessor>();
    const auto logger = makeReference<test::OpenLogger>();
    logger->addProcessor(quark::QuarkProcessor::create(target.get()).get());
    logger->Logger::log(1, u"x");
    const auto empty = LogEntry::create();
    EXPECT_EQ(io::test::codeThrownBy([&] { logger->log(empty.get()); }), 0x80071234);
    EXPECT_EQ(target->calls, 2);
    const auto foreign = makeReference<test::ForeignEntry>(*empty);
    EXPECT_EQ(io::test::codeThrownBy([&] { logger->log(foreign.get()); }), 0x80004002);
}

} // namespace
} // namespace orv::log
