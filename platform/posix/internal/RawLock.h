#pragma once

#include "platform/posix/internal/Futex.h"

#include <atomic>
#include <cstdint>

namespace orvcore {

/// A lock of one word, not recursive and without an owner. Zero bits are a free lock.
class RawLock {
public:
    constexpr RawLock() noexcept = default;
    RawLock(const RawLock&) = delete;
    RawLock& operator=(const RawLock&) = delete;

    bool tryLock() noexcept
    {
        std::uint32_t expected = FREE;
        return m_state.compare_exchange_strong(expected, HELD, std::memory_order_acquire,
                                               std::memory_order_relaxed);
    }

    void lock() noexcept
    {
        if (!tryLock()) lockContended();
    }

    /// Touches the lock no more once it is free, so that the next owner may destroy it.
    void unlock() noexcept
    {
        if (m_state.exchange(FREE, std::memory_order_release) == AWAITED) futexWake(&m_state, 1);
    }

    bool isHeld() const noexcept { return m_state.load(std::memory_order_relaxed) != FREE; }

private:
    static constexpr std::uint32_t FREE = 0;
    static constexpr std::uint32_t HELD = 1;
    static constexpr std::uint32_t AWAITED = 2; ///< held, and somebody may sleep

    void lockContended() noexcept;

    std::atomic<std::uint32_t> m_state{FREE};
};

/// Holds a RawLock for a scope.
class RawGuard {
public:
    explicit RawGuard(RawLock& lock) noexcept : m_lock(lock) { m_lock.lock(); }
    RawGuard(const RawGuard&) = delete;
    RawGuard& operator=(const RawGuard&) = delete;
    ~RawGuard() { m_lock.unlock(); }

private:
    RawLock& m_lock;
};

} // namespace orvcore
