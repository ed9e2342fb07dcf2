#include "platform/orvcore.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <csignal>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace {

using orv::test::awaitSleepOf;
using orv::test::awaitTrue;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr ORVResult busy = ORVMakeResult(0x800700AAu);
constexpr ORVResult timedOut = ORVMakeResult(0x800705B4u);
constexpr std::uint32_t longTime = 30'000;

/// An object of orvcore for the length of a test.
template <class Create, class Destroy>
class Owned {
public:
    Owned(Create create, Destroy destroy) : m_destroy(destroy)
    {
        EXPECT_EQ(create(&m_handle), S_OK);
    }
    ~Owned() { EXPECT_EQ(m_destroy(m_handle), S_OK); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    operator ORVHandle() const { return m_handle; }

private:
    ORVHandle m_handle = 0;
    Destroy m_destroy;
};

auto makeMutex()
{
    return Owned([](ORVHandle* out) { return ORVMutexCreate("test", 0, out); }, ORVMutexDestroy);
}
auto makeEvent()
{
    return Owned([](ORVHandle* out) { return ORVEventCreate(nullptr, 0, out); }, ORVEventDestroy);
}
auto makeGate()
{
    return Owned([](ORVHandle* out) { return ORVGateCreate(nullptr, 0, out); }, ORVGateDestroy);
}
auto makeSemaphore(std::uint32_t count)
{
    return Owned([=](ORVHandle* out) { return ORVSemaphoreCreate(count, nullptr, 0, out); },
                 ORVSemaphoreDestroy);
}
auto makeLock()
{
    return Owned([](ORVHandle* out) { return ORVRWLockCreate(nullptr, 0, out); }, ORVRWLockDestroy);
}
auto makeCondition()
{
    return Owned([](ORVHandle* out) { return ORVConditionCreate(nullptr, 0, out); },
                 ORVConditionDestroy);
}

/// Threads that all run `body`, which gets their number.
template <class Body>
std::vector<std::thread> startThreads(int count, Body body)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) threads.emplace_back(body, i);
    return threads;
}

void joinAll(std::vector<std::thread>& threads)
{
    for (std::thread& thread : threads) thread.join();
}

/// A thread that waits by `wait` and tells when it has gone to sleep, and what came of it.
class Waiter {
public:
    template <class Wait>
    explicit Waiter(Wait wait)
        : m_thread([this, wait] {
              m_id = orvcore::currentThreadId();
              m_result = wait();
          })
    {
    }
    bool sleeps() const
    {
        return awaitTrue([this] { return m_id != 0; }) && awaitSleepOf(m_id);
    }
    pthread_t native() { return m_thread.native_handle(); }
    ORVResult result()
    {
        m_thread.join();
        return m_result;
    }

private:
    std::atomic<std::uint32_t> m_id{0};
    ORVResult m_result = -1;
    std::thread m_thread;
};

TEST(Mutex, excludesUnderContention)
{
    const auto mutex = makeMutex();
    int plain = 0;
    auto threads = startThreads(4, [&](int) {
        for (int i = 0; i < 20'000; ++i) {
            ORVMutexAcquire(mutex);
            ++plain;
            ORVMutexRelease(mutex);
        }
    });
    joinAll(threads);
    EXPECT_EQ(plain, 80'000);
}

TEST(TimedWaits, lastAsLongAsToldThroughInterruptions)
{
    struct sigaction action {};
    action.sa_handler = [](int) {};
    struct sigaction before {};
    ::sigaction(SIGUSR1, &action, &before);

    const auto event = makeEvent();
    const auto gate = makeGate();
    const auto condition = makeCondition();
    constexpr std::uint32_t time = 60;
    const auto waitAtCondition = [&] {
        ORVConditionAcquire(condition);
        const ORVResult result = ORVConditionTimedWait(condition, time);
        const ORVResult released = ORVConditionRelease(condition);
        return released < 0 ? released : result;
    };
    const auto check = [&](const char* what, auto wait) {
        const auto start = steady_clock::now();
        std::atomic<bool> done{false};
        Waiter waiter([&] {
            const ORVResult result = wait();
            done = true;
            return result;
        });
        while (!done) {
            ::pthread_kill(waiter.native(), SIGUSR1);
            std::this_thread::yield();
        }
        EXPECT_EQ(waiter.result(), timedOut) << what;
        EXPECT_GE(steady_clock::now() - start, milliseconds(time)) << what;
    };
    check("event", [&] { return ORVEventTimedWait(event, time); });
    check("gate", [&] { return ORVGateTimedWait(gate, time); });
    check("condition", waitAtCondition);
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(Gate, anOpeningLetsAllSleepersPassThoughItClosesAtOnce)
{
    const auto gate = makeGate();
    for (int round = 0; round < 3; ++round) {
        Waiter first([&] { return ORVGateTimedWait(gate, longTime); });
        Waiter second([&] { return ORVGateTimedWait(gate, longTime); });
        EXPECT_TRUE(first.sleeps() && second.sleeps());
        ORVGateOpen(gate);
        ORVGateClose(gate);
        EXPECT_EQ(first.result(), S_OK);
        EXPECT_EQ(second.result(), S_OK);
    }
}

/// Uses every object without contention; to be run where a system call is deadly.
void useObjects(const ORVHandle (&objects)[6])
{
    const auto [mutex, event, gate, semaphore, lock, condition] = objects;
    for (int i = 0; i < 3; ++i) {
        ORVMutexAcquire(mutex);
        ORVMutexTryAcquire(mutex);
        ORVMutexRelease(mutex);
        ORVMutexRelease(mutex);
        ORVEventSignal(event);
        ORVEventWait(event);
        ORVGateOpen(gate);
        ORVGateWait(gate);
        ORVGateClose(gate);
        ORVSemaphorePost(semaphore);
        ORVSemaphoreWait(semaphore);
        ORVRWLockAcquireRead(lock);
        ORVRWLockReleaseRead(lock);
        ORVRWLockAcquireWrite(lock);
        ORVRWLockReleaseWrite(lock);
        ORVConditionAcquire(condition);
        ORVConditionSignal(condition);
        ORVConditionBroadcast(condition);
        ORVConditionRelease(condition);
    }
}

TEST(Locks, makeNoSystemCallWithoutContention)
{
    const auto mutex = makeMutex();
    const auto event = makeEvent();
    const auto gate = makeGate();
    const auto semaphore = makeSemaphore(0);
    const auto lock = makeLock();
    const auto condition = makeCondition();
    const ORVHandle objects[] = {mutex, event, gate, semaphore, lock, condition};
    useObjects(objects); // binds the symbols

    const orv::test::SharedPage<std::atomic<bool>> done;
    const orv::test::ForkedChild child([&] {
        // From here on the kernel kills for any call but read, write and exit.
        if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) return 1;
        useObjects(objects);
        *done = true;
        ::syscall(SYS_exit, 0);
        return 2;
    });
    EXPECT_TRUE(awaitTrue([&] { return done->load(); }));
}

} // namespace
