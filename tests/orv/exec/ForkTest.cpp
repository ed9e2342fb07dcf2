#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/Logger.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "tests/orv/exec/Jobs.h"
#include "tests/support/Processes.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace orv::exec {
namespace {

// A child does what a child may do: exec, or _exit.
TEST(Fork, leavesTheThreadsOfTheParentAlone)
{
    const test::TemporaryFolder folder;
    sync::Mutex mutex;
    sync::ReaderWriterLock lock;
    sync::Condition condition;
    sync::Semaphore there(0);
    sync::Semaphore back(0);
    long guarded = 0;
    std::atomic<long> counted{0}, logged{0};
    bool turn = false;
    const String shared(u"a text that many threads copy");

    std::vector<Reference<Thread>> threads;
    std::atomic<bool> stop{false};
    const auto add = [&](const std::function<void()>& work) {
        threads.push_back(startThread([&stop, work] {
            while (!stop.load(std::memory_order_relaxed)) work();
        }));
    };
    for (int i = 0; i < 2; ++i) {
        add([&] {
            {
                const sync::Lock hold(mutex);
                ++guarded;
            }
            counted.fetch_add(1, std::memory_order_relaxed);
            lock.waitShared();
            String copy(shared);
            lock.signalShared();
            copy.append(u" and change");
            lock.wait();
            lock.signal();
            EXPECT_EQ(copy.getLength(), shared.getLength() + 11);
        });
        add([&, i] {
            const sync::Condition::Holder hold(condition);
            if (turn == (i == 0)) return;
            turn = !turn;
            condition.broadcast();
        });
        // Both append to one file under its lock, which a child has, too, until it ends.
        const auto file = makeReference<io::FileOutputStream>(folder.file(u"log.txt"),
                                                              io::FileOutputStream::APPEND);
        const auto text = makeReference<io::OutputStreamWriter>(file.get(), u"UTF-8", 4096);
        const auto logger = log::Logger::create();
        logger->addProcessor(log::BasicLogWriter::create(text.get()).get());
        add([&logged, logger] {
            logger->log(0, u"x");
            ++logged;
        });
    }
    add([&] {
        there.signal();
        back.wait();
    });
    add([&] {
        if (there.tryWait()) back.signal();
        startThread([] {})->join();
    });

    // With a sanitizer at work a fork takes twenty times as long.
    for (int i = 0; i < 1000 / test::SLOWNESS; ++i) {
        test::ForkedChild child(
            [i] { return i % 20 == 0 ? ::execl("/bin/true", "true", nullptr) : 0; });
        ASSERT_EQ(child.exitCode(), 0) << i;
    }
    stop = true;
    back.signal(); // for the thread that may wait for an answer
    for (const auto& thread : threads) thread->join();
    EXPECT_EQ(guarded, counted);
    std::string entries;
    while (logged-- > 0) entries += "level=0\ntext=x\n-------------------------\n";
    EXPECT_FALSE(entries.empty());
    EXPECT_TRUE(folder.read("log.txt") == entries);
}

} // namespace
} // namespace orv::exec
