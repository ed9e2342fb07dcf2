#include "platform/orvcore.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"
#include "tests/support/SignalStorm.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace {

using orv::test::awaitSleepOf;
using orv::test::awaitTrue;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr ORVResult timedOut = ORVMakeResult(0x800705B4u);
constexpr std::uint32_t longTime = 30'000;

/// An object of each kind.
struct Objects {
    Objects()
    {
        EXPECT_EQ(ORVMutexCreate("test", 0, &mutex), S_OK);
        EXPECT_EQ(ORVEventCreate(nullptr, 0, &event), S_OK);
        EXPECT_EQ(ORVGateCreate(nullptr, 0, &gate), S_OK);
        EXPECT_EQ(ORVSemaphoreCreate(0, nullptr, 0, &semaphore), S_OK);
        EXPECT_EQ(ORVRWLockCreate(nullptr, 0, &lock), S_OK);
        EXPECT_EQ(ORVConditionCreate(nullptr, 0, &condition), S_OK);
    }
    ~Objects()
    {
        EXPECT_EQ(ORVMutexDestroy(mutex), S_OK);
        EXPECT_EQ(ORVEventDestroy(event), S_OK);
        EXPECT_EQ(ORVGateDestroy(gate), S_OK);
        EXPECT_EQ(ORVSemaphoreDestroy(semaphore), S_OK);
        EXPECT_EQ(ORVRWLockDestroy(lock), S_OK);
        EXPECT_EQ(ORVConditionDestroy(condition), S_OK);
    }
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    ORVHandle mutex, event, gate, semaphore, lock, condition;
};

TEST(TimedWaits, lastAsLongAsToldThroughInterruptions)
{
    const Objects objects;
    constexpr std::uint32_t time = 60;
    const auto check = [=](const char* what, auto wait, ORVHandle handle) {
        const orv::test::SignalStorm storm;
        const auto start = steady_clock::now();
        EXPECT_EQ(wait(handle, time), timedOut) << what;
        EXPECT_GE(steady_clock::now() - start, milliseconds(time)) << what;
    };
    check("event", ORVEventTimedWait, objects.event);
    check("gate", ORVGateTimedWait, objects.gate);
    ORVConditionAcquire(objects.condition);
    check("condition", ORVConditionTimedWait, objects.condition);
    EXPECT_EQ(ORVConditionRelease(objects.condition), S_OK);
}

// A waiter whose time has gone takes a signal that comes before it has left.
TEST(TimedWaits, loseNoSignalThatComesAsTheyEnd)
{
    const Objects objects;
    for (int round = 0; round < 100; ++round) {
        const auto moment = steady_clock::now() + std::chrono::microseconds(1000 + round);
        std::thread signaller([&] {
            while (steady_clock::now() < moment) {
            }
            ORVEventSignal(objects.event);
        });
        const ORVResult result = ORVEventTimedWait(objects.event, 1);
        signaller.join();
        EXPECT_EQ(ORVEventTimedWait(objects.event, 0), result == S_OK ? timedOut : S_OK);
    }
}

TEST(Locks, stayWhileAnotherThreadHoldsThem)
{
    const Objects objects;
    ORVMutexAcquire(objects.mutex);
    ORVRWLockAcquireRead(objects.lock);
    ORVConditionAcquire(objects.condition);
    std::thread([&] {
        constexpr ORVResult busy = ORVMakeResult(0x800700AAu);
        EXPECT_EQ(ORVMutexDestroy(objects.mutex), busy);
        EXPECT_EQ(ORVRWLockDestroy(objects.lock), busy);
        EXPECT_EQ(ORVConditionDestroy(objects.condition), busy);
    }).join();
    EXPECT_EQ(ORVMutexRelease(objects.mutex), S_OK);
    EXPECT_EQ(ORVRWLockReleaseRead(objects.lock), S_OK);
    EXPECT_EQ(ORVConditionRelease(objects.condition), S_OK);
}

TEST(Gate, anOpeningLetsAllSleepersPassThoughItClosesAtOnce)
{
    const Objects objects;
    for (int round = 0; round < 3; ++round) {
        std::atomic<std::uint32_t> ids[2] = {};
        std::vector<std::thread> sleepers;
        for (auto& id : ids) {
            sleepers.emplace_back([&] {
                id = orvcore::currentThreadId();
                EXPECT_EQ(ORVGateTimedWait(objects.gate, longTime), S_OK);
            });
        }
        for (auto& id : ids) EXPECT_TRUE(awaitTrue([&] { return id != 0; }) && awaitSleepOf(id));
        ORVGateOpen(objects.gate);
        ORVGateClose(objects.gate);
        for (std::thread& sleeper : sleepers) sleeper.join();
    }
}

/// Uses every object without contention; to be run where a system call is deadly.
void use(const Objects& objects)
{
    const auto& [mutex, event, gate, semaphore, lock, condition] = objects;
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
    const Objects objects;
    use(objects); // binds the symbols

    const orv::test::SharedPage<std::atomic<bool>> done;
    const orv::test::ForkedChild child([&] {
        // From here on the kernel kills for any call but read, write and exit.
        if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) return 1;
        use(objects);
        *done = true;
        ::syscall(SYS_exit, 0);
        return 2;
    });
    EXPECT_TRUE(awaitTrue([&] { return done->load(); }));
}

} // namespace
