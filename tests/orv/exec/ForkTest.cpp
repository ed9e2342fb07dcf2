#include "orv/exec/Process.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "tests/orv/exec/Jobs.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace orv::exec {
namespace {

// With a sanitizer at work a fork takes twenty times as long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int forks = 100;
#else
constexpr int forks = 1000;
#endif

/// What the threads of a busy host do: each turn is one piece of work with the library.
class Load {
public:
    /// Adds a thread that does `turn` again and again until the end.
    void add(std::function<void()> turn)
    {
        m_threads.push_back(startThread([this, turn = std::move(turn)] {
            while (!m_stop.load(std::memory_order_relaxed)) {
                turn();
                m_turns.fetch_add(1, std::memory_order_relaxed);
            }
        }));
    }

    /// Tells the threads to end with the turn that they are in.
    void stop() { m_stop = true; }

    /// Waits for their end; the number of turns.
    long join()
    {
        for (const auto& thread : m_threads) thread->join();
        return m_turns;
    }

private:
    std::vector<Reference<Thread>> m_threads;
    std::atomic<bool> m_stop{false};
    std::atomic<long> m_turns{0};
};

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

    Load load;
    for (int i = 0; i < 2; ++i) {
        load.add([&] {
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
        load.add([&, i] {
            const sync::Condition::Holder hold(condition);
            if (turn == (i == 0)) return;
            turn = !turn;
            condition.broadcast();
        });
    }
    load.add([&] {
        there.signal();
        back.wait();
    });
    load.add([&] {
        if (there.tryWait()) back.signal();
        startThread([] {})->join();
    });

    for (int i = 0; i < forks; ++i) ASSERT_EQ(statusOfChild(i % 20 == 0), 0) << i;
    load.stop();
    back.signal(); // for the thread that may wait for an answer
    EXPECT_GT(load.join(), 0);
    EXPECT_EQ(guarded, counted);
}

} // namespace
} // namespace orv::exec
