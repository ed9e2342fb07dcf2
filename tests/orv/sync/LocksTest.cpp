#include "orv/Exception.h"
#include "orv/sync/Condition.h"
#include "orv/sync/Event.h"
#include "orv/sync/FakeMutex.h"
#include "orv/sync/Gate.h"
#include "orv/sync/Handle.h"
#include "orv/sync/Lock.h"
#include "orv/sync/Mutex.h"
#include "orv/sync/ReaderWriterLock.h"
#include "orv/sync/Semaphore.h"
#include "orv/sync/internal/TimedWait.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <type_traits>

namespace orv::sync {
namespace {

constexpr Result notOwner = makeResult(0x80070120u);
constexpr Result busy = makeResult(0x800700AAu);

static_assert(sizeof(Mutex) == sizeof(::orv::Object) + sizeof(ORVHandle));
static_assert(!std::is_copy_constructible_v<Semaphore>);
static_assert(!std::is_nothrow_destructible_v<Gate>);
static_assert(!std::is_nothrow_destructible_v<Lock>);
static_assert(!std::is_base_of_v<Object, Condition>);

TEST(SyncMutex, belongsToOneThreadUntilItsLastSignal)
{
    Mutex mutex("a name", 0);
    const auto isFree = [&] {
        bool got = false;
        std::thread([&] {
            got = mutex.tryWait();
            if (got) mutex.signal();
        }).join();
        return got;
    };
    mutex.wait();
    mutex.wait();
    EXPECT_TRUE(mutex.tryWait());
    for (int holds = 3; holds > 0; --holds) {
        EXPECT_FALSE(isFree()) << holds;
        mutex.signal();
    }
    EXPECT_EQ(resultOf([&] { mutex.signal(); }), notOwner);
    EXPECT_TRUE(isFree());

    EXPECT_EQ(resultOf([&] {
                  const Lock lock(mutex);
                  EXPECT_FALSE(isFree());
                  throw ResultException(E_FAIL);
              }),
              E_FAIL);
    EXPECT_TRUE(isFree());
    {
        const Lock none(static_cast<LockObject*>(nullptr));
        const Lock lock(&mutex);
        EXPECT_FALSE(isFree());
    }
    EXPECT_TRUE(isFree());
}

TEST(SyncHandle, theDestructorThrowsUnlessAnExceptionIsOnItsWay)
{
    using Failing = Handle<[](ORVHandle) { return busy; }>;
    EXPECT_EQ(resultOf([] {
                  Failing handle;
                  *handle.receive() = 1;
              }),
              busy);
    EXPECT_EQ(resultOf([] {
                  Failing handle;
                  *handle.receive() = 1;
                  throw ResultException(E_FAIL);
              }),
              E_FAIL);
    EXPECT_EQ(resultOf([] { const Failing none; }), S_OK);
}

void giveBack(Mutex& mutex)
{
    mutex.signal();
}
void giveBack(Condition& condition)
{
    condition.release();
}

/// What comes out of a scope whose guard has nothing left to give back.
template <class Guard, class Guarded>
Result endOfScope(bool throwing)
{
    Guarded guarded;
    return resultOf([&] {
        const Guard guard(guarded);
        giveBack(guarded);
        if (throwing) throw ResultException(E_FAIL);
    });
}

TEST(SyncGuards, throwUnlessAnExceptionEndsTheirScope)
{
    for (const auto end : {endOfScope<Lock, Mutex>, endOfScope<Condition::Holder, Condition>}) {
        EXPECT_EQ(end(false), notOwner);
        EXPECT_EQ(end(true), E_FAIL);
        const auto inUnwinding = [&](const int*) {
            EXPECT_EQ(end(false), notOwner);
            EXPECT_EQ(end(true), E_FAIL);
        };
        const auto unwind = [&] {
            const int place = 0;
            const std::unique_ptr<const int, decltype(inUnwinding)> guard(&place, inUnwinding);
            throw ResultException(busy);
        };
        EXPECT_EQ(resultOf(unwind), busy);
    }
}

TEST(FakeMutex, locksNothing)
{
    FakeMutex mutex(nullptr, 0);
    mutex.wait();
    std::thread([&] { mutex.wait(); }).join();
    EXPECT_TRUE(mutex.tryWait());
    for (int i = 0; i < 4; ++i) mutex.signal();
    EXPECT_TRUE(mutex.tryWait());
}

TEST(SyncEvent, tryWaitIsFalseAndLeavesTheSignal)
{
    Event event;
    EXPECT_FALSE(event.wait(0u));
    event.signal();
    event.signal(); // adds nothing to the first
    EXPECT_FALSE(event.tryWait());
    EXPECT_TRUE(event.wait(0u));
    EXPECT_FALSE(event.wait(1u));
    event.signal();
    event.wait();
    EXPECT_FALSE(event.wait(0u));
}

TEST(SyncGate, waitsOnlyWhileItIsClosed)
{
    Gate gate;
    EXPECT_FALSE(gate.tryWait());
    EXPECT_FALSE(gate.wait(0u));
    gate.open();
    EXPECT_TRUE(gate.tryWait());
    EXPECT_TRUE(gate.wait(0u));
    gate.wait();
    gate.close();
    EXPECT_FALSE(gate.wait(1u));
}

TEST(TimedWait, isPassedByTheResultZeroAlone)
{
    EXPECT_TRUE(passedInTime(S_OK));
    EXPECT_FALSE(passedInTime(E_TIMED_OUT));
    EXPECT_FALSE(passedInTime(1));
    EXPECT_EQ(resultOf([] { passedInTime(E_FAIL); }), E_FAIL);
}

TEST(SyncSemaphore, countsAndHandsOver)
{
    Semaphore there(0);
    Semaphore back(1, "a name");
    EXPECT_FALSE(there.tryWait());
    EXPECT_TRUE(back.tryWait());
    int plain = 0;
    std::thread other([&] {
        there.wait();
        ++plain;
        back.signal();
    });
    there.signal();
    back.wait();
    EXPECT_EQ(plain, 1);
    other.join();
    for (int i = 0; i < 3; ++i) back.signal();
    EXPECT_EQ(back.getValue(), 3);
    EXPECT_EQ(resultOf([] { Semaphore tooMuch(0x80000000u); }), E_INVALIDARG);
}

TEST(ReaderWriterLock, signalGivesBackAHoldOfEitherSide)
{
    ReaderWriterLock lock;
    lock.waitShared();
    EXPECT_TRUE(lock.tryWaitShared());
    EXPECT_FALSE(lock.tryWait());
    lock.signal();
    lock.signalShared();
    EXPECT_EQ(resultOf([&] { lock.signalShared(); }), notOwner);
    {
        const Lock writing(lock);
        EXPECT_FALSE(lock.tryWaitShared());
    }
    EXPECT_EQ(resultOf([&] { lock.signal(); }), notOwner);
    EXPECT_TRUE(lock.tryWait());
    lock.signal();
}

TEST(SyncCondition, carriesWhatIsWaitedFor)
{
    Condition condition;
    int tickets = 0;
    const auto take = [&] {
        const Condition::Holder holder(condition);
        while (tickets == 0) condition.wait();
        --tickets;
    };
    std::thread first(take);
    std::thread second(take);
    for (int i = 0; i < 2; ++i) {
        const Condition::Holder holder(condition);
        ++tickets;
        i == 0 ? condition.broadcast() : condition.signal();
    }
    first.join();
    second.join();
    EXPECT_EQ(tickets, 0);
}

} // namespace
} // namespace orv::sync
