#pragma once

#include "platform/orvcore.h"

#include <atomic>
#include <cstdint>
#include <limits>

/// \file
/// The words that mutexes, reader-writer locks, semaphores and conditions consist of, and what is
/// done with them where nobody waits.
///
/// orv::sync does that much in place and leaves the rest to the operations of orvcore.h: a call
/// into another library would cost as much again. A try that returns false has done nothing.
///
/// What may wait or wake is not exported; it is for the operations of orvcore.h. None of it touches
/// a word after the operation that sets it free: the next owner may have destroyed it.

namespace orvcore {

class Deadline;

/// A byte per thread whose address tells the threads of a process apart, at the price of one
/// addition; asking the system for an identifier would cost a call at each acquisition. The lowest
/// bit of the address is free for a mark.
alignas(8) extern ORVCORE_API constinit thread_local char t_thread
    [[gnu::tls_model("initial-exec")]];

/// A lock that knows its owner; it is not recursive by itself.
class OwnerWord {
public:
    constexpr OwnerWord() noexcept = default;
    OwnerWord(const OwnerWord&) = delete;
    OwnerWord& operator=(const OwnerWord&) = delete;

    /// Acquires if the lock is free.
    bool tryAcquire() noexcept
    {
        Word expected = FREE;
        return m_owner.compare_exchange_strong(expected, caller(), std::memory_order_acquire,
                                               std::memory_order_relaxed);
    }

    /// Whether the caller is the owner. Others may read any value here, but never their own.
    bool isMine() const noexcept { return (load() & ~AWAITED) == caller(); }

    /// Whether the caller is the owner and nobody sleeps.
    bool isMineAlone() const noexcept { return load() == caller(); }

    bool isHeld() const noexcept { return load() != FREE; }

    /// Gives the lock back if it is the caller's and nobody sleeps.
    bool tryRelease() noexcept
    {
        Word expected = caller();
        return m_owner.compare_exchange_strong(expected, FREE, std::memory_order_release,
                                               std::memory_order_relaxed);
    }

    /// Acquires after tryAcquire() failed. For the owner it waits for ever.
    void acquireContended() noexcept;

    /// Acquires for one who slept at this word, or may have been moved there to sleep.
    void acquireAsSleeper() noexcept;

    /// Moves at most `count` sleepers from `word`, if it is still `expected`, to this lock, whose
    /// release wakes them. To be called by the owner; false, with nobody moved, if it is not.
    bool adoptSleepers(const void* word, std::uint32_t expected, std::int32_t count) noexcept;

    /// To be called by the owner.
    void release() noexcept;

private:
    using Word = std::uintptr_t;
    static constexpr Word FREE = 0;
    static constexpr Word AWAITED = 1; ///< somebody may sleep

    static Word caller() noexcept { return reinterpret_cast<Word>(&t_thread); }
    Word load() const noexcept { return m_owner.load(std::memory_order_relaxed); }
    void sleep() noexcept;

    std::atomic<Word> m_owner{FREE}; ///< the owner's t_thread, and the mark of sleepers
};

/// A reader-writer lock that prefers readers.
///
/// The lower half of the word holds the owners and marks of the two kinds of sleepers. They sleep
/// on the upper half, which counts the moments when the lock came free for them, so that readers
/// who come and go behind a waiting writer do not wake it. Such a release clears the marks, wakes
/// all readers and one writer; a writer that comes from sleep puts the mark of writers back.
class SharedWord {
public:
    SharedWord() noexcept = default;
    SharedWord(const SharedWord&) = delete;
    SharedWord& operator=(const SharedWord&) = delete;

    bool isHeld() const noexcept { return (load() & HELD) != 0; }

    /// Acquires for reading unless a writer holds the lock.
    bool tryRead() noexcept
    {
        State state = load();
        while ((state & WRITER) == 0) {
            if (exchange(state, state + 1, std::memory_order_acquire)) return true;
        }
        return false;
    }

    /// Acquires for writing if nobody holds the lock.
    bool tryWrite() noexcept { return tryWriteAnd(0); }

    /// Gives back one hold of whichever side is held, if nobody sleeps.
    bool tryRelease() noexcept
    {
        State state = load();
        while ((state & HELD) != 0 && (state & SLEEPERS) == 0) {
            const State hold = (state & WRITER) != 0 ? WRITER : 1;
            if (exchange(state, state - hold, std::memory_order_release)) return true;
        }
        return false;
    }

    /// Acquires for reading after tryRead() failed.
    void readContended() noexcept;

    /// Acquires for writing after tryWrite() failed.
    void writeContended() noexcept;

    /// Gives back one hold of whichever side is held; false when none is.
    bool release() noexcept;

private:
    using State = std::uint64_t;
    static constexpr State oneFreeing = State{1} << 32;
    static constexpr State WRITER = 0x80000000u;
    static constexpr State READERS_SLEEP = 0x40000000u;
    static constexpr State WRITERS_SLEEP = 0x20000000u;
    static constexpr State SLEEPERS = READERS_SLEEP | WRITERS_SLEEP;
    static constexpr State HELD = 0x9FFFFFFFu; ///< the writer, or the number of readers

    State load() const noexcept { return m_state.load(std::memory_order_relaxed); }

    bool exchange(State& state, State next, std::memory_order order) noexcept
    {
        return m_state.compare_exchange_weak(state, next, order, std::memory_order_relaxed);
    }

    /// Acquires for writing, if nobody holds the lock, and sets `marks`.
    bool tryWriteAnd(State marks) noexcept
    {
        State state = load();
        while ((state & HELD) == 0) {
            if (exchange(state, state | WRITER | marks, std::memory_order_acquire)) return true;
        }
        return false;
    }

    void sleepWhile(State side, State mark) noexcept;
    void wake(State state) const noexcept;

    std::atomic<State> m_state{0};
    static_assert(std::atomic<State>::is_always_lock_free);
};

/// A count to take from, in the lower half of the word, and the number of those who sleep for it.
class CountWord {
public:
    static constexpr std::uint32_t largest = std::numeric_limits<std::int32_t>::max();

    explicit CountWord(std::uint32_t value) noexcept : m_state(value) {}
    CountWord(const CountWord&) = delete;
    CountWord& operator=(const CountWord&) = delete;

    std::uint32_t value() const noexcept
    {
        return valueOf(m_state.load(std::memory_order_acquire));
    }

    /// Takes 1 if there is 1.
    bool tryTake() noexcept { return takeAnd(0); }

    /// Adds 1 if nobody sleeps and the count is not at its largest.
    bool tryAdd() noexcept
    {
        State state = m_state.load(std::memory_order_relaxed);
        while (state < largest) {
            if (m_state.compare_exchange_weak(state, state + 1, std::memory_order_release,
                                              std::memory_order_relaxed)) {
                return true;
            }
        }
        return false;
    }

    /// Takes 1, sleeping until there is 1; false when `deadline` passed.
    bool take(const Deadline& deadline) noexcept;

    /// Adds 1; false when the count is at its largest.
    bool add() noexcept;

    /// Adds 1 as long as there are fewer than sleepers to take them, or none at all.
    void addOnePerSleeper() noexcept;

private:
    using State = std::uint64_t;
    static constexpr State oneSleeper = State{1} << 32;

    static std::uint32_t valueOf(State state) noexcept { return static_cast<std::uint32_t>(state); }
    static std::uint32_t sleepersOf(State state) noexcept
    {
        return static_cast<std::uint32_t>(state >> 32);
    }

    /// Takes 1 if there is 1, and `also` off the word with it.
    bool takeAnd(State also) noexcept
    {
        State state = m_state.load(std::memory_order_relaxed);
        while (valueOf(state) > 0) {
            if (m_state.compare_exchange_weak(state, state - 1 - also, std::memory_order_acquire,
                                              std::memory_order_relaxed)) {
                return true;
            }
        }
        return false;
    }

    template <class Limit>
    bool addBelow(Limit limit) noexcept;
    bool takeAsSleeper(const Deadline& deadline) noexcept;
    bool leave() noexcept;

    std::atomic<State> m_state; ///< sleepers in the upper half, the value in the lower
    static_assert(std::atomic<State>::is_always_lock_free);
};

/// How the record of a mutex begins.
struct MutexWords {
    OwnerWord owner;
    std::uint32_t depth = 0; ///< acquisitions of the owner beyond its first

    /// Gives the mutex back where that sets it free and nobody sleeps.
    bool tryRelease() noexcept { return owner.isMineAlone() && depth == 0 && owner.tryRelease(); }
};

/// How the record of a condition begins.
struct ConditionWords {
    OwnerWord owner;
    std::atomic<std::uint32_t> waiters{0};

    /// Whether there is nobody to wake. Whoever changed what is waited for did so under the lock,
    /// which has made the waiter visible that went to sleep before.
    bool hasNoWaiter() const noexcept { return waiters.load(std::memory_order_relaxed) == 0; }
};

/// The words at the start of the record behind a handle: MutexWords, ConditionWords, SharedWord of
/// a reader-writer lock, CountWord of a semaphore without a name. The handle must be a living one.
template <class Words>
Words& wordsOf(ORVHandle handle) noexcept
{
    return *reinterpret_cast<Words*>(static_cast<std::uintptr_t>(handle));
}

} // namespace orvcore
