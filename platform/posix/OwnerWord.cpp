#include "platform/internal/LockWords.h"
#include "platform/posix/internal/Futex.h"

namespace orvcore {

alignas(8) constinit thread_local char t_thread = 0;

void OwnerWord::acquireContended() noexcept
{
    if (spinUntil([this] { return !isHeld() && tryAcquire(); })) return;
    acquireAsSleeper();
}

void OwnerWord::acquireAsSleeper() noexcept
{
    // Whoever comes from sleep leaves the mark of sleepers behind: there may be more of them.
    Word expected = FREE;
    while (!m_owner.compare_exchange_strong(expected, caller() | AWAITED, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
        sleep();
        expected = FREE;
    }
}

bool OwnerWord::adoptSleepers(const void* word, std::uint32_t expected, std::int32_t count) noexcept
{
    m_owner.fetch_or(AWAITED, std::memory_order_relaxed);
    return futexMove(word, expected, &m_owner, count);
}

void OwnerWord::sleep() noexcept
{
    Word word = load();
    while ((word & AWAITED) == 0) {
        if (word == FREE) return;
        if (m_owner.compare_exchange_weak(word, word | AWAITED, std::memory_order_relaxed)) {
            word |= AWAITED;
        }
    }
    // The kernel looks at the lower half, which is enough: the mark is in it.
    futexWait(&m_owner, static_cast<std::uint32_t>(word));
}

void OwnerWord::release() noexcept
{
    if ((m_owner.exchange(FREE, std::memory_order_release) & AWAITED) != 0) futexWake(&m_owner, 1);
}

} // namespace orvcore
