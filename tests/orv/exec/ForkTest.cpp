#include "orv/exec/Process.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "tests/orv/exec/Jobs.h"
#include "tests/support/Sanitizers.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace orv::exec {
namespace {

// With a sanitizer at work a fork takes twenty times as long.
constexpr int forks = 1000 / test::SLOWNESS;

/// How a child of fork() ended that did what a child may do: exec, or _exit.
int statusOfChild(bool executes)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (executes) ::execl("/bin/true", "true", nullptr);
        ::_exit(executes ? 1 : 0);
    }
    int status = -1;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

TEST(Fork, leavesTheThreadsOfTheParentAlone)
{
    sync::Mutex mutex;
    sync::ReaderWriterLock lock;
    sync::Condition condition;
    sync::Semaphore there(0);
    sync::Semaphore back(0);
    long guarded = 0;
    std::atomic<long> counted{0};
    bool turn = false;
    const String shared(u"a text that many threads copy");

    std::vector<Reference<Thread>> threads;
    std::atomic<bool> stop{false};
    std::atomic<long> turns{0};
    const auto add = [&](const std::function<void()>& work) {
        threads.push_back(startThread([&, work] {
            for (; !stop.load(std::memory_order_relaxed); ++turns) work();
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
    }
    add([&] {
        there.signal();
        back.wait();
    });
    add([&] {
        if (there.tryWait()) back.signal();
        startThread([] {})->join();
    });

    for (int i = 0; i < forks; ++i) ASSERT_EQ(statusOfChild(i % 20 == 0), 0) << i;
    stop = true;
    back.signal(); // for the thread that may wait for an answer
    for (const auto& thread : threads) thread->join();
    EXPECT_GT(turns, 0);
    EXPECT_EQ(guarded, counted);
}

} // namespace
} // namespace orv::exec
