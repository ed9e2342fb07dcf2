#include "platform/posix/internal/Futex.h"

#include "platform/posix/internal/RawLock.h"

#include <algorithm>
#include <cerrno>

#include <linux/futex.h>
#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvcore {
namespace {

// Some microseconds: about what it costs to put a thread to sleep and to wake it.
constexpr std::int32_t mostTurns = 100;
constexpr std::int32_t fewestTurns = 4;

// After so many failures the most turns are tried once, lest a busy hour be remembered for ever.
constexpr std::uint32_t failuresToForget = 32;

constinit std::atomic<std::int32_t> s_turns{-1}; ///< below 0 until the processors are counted
constinit std::atomic<std::uint32_t> s_failures{0};

int futexOperation(int operation, FutexScope scope) noexcept
{
    return scope == FutexScope::Process ? operation | FUTEX_PRIVATE_FLAG : operation;
}

bool hasOneProcessor() noexcept
{
    cpu_set_t processors;
    return ::sched_getaffinity(0, sizeof processors, &processors) == 0 &&
           CPU_COUNT(&processors) == 1;
}

} // namespace

Deadline Deadline::after(std::uint32_t milliseconds) noexcept
{
    Deadline deadline;
    if (milliseconds == ORV_INFINITE) return deadline;

    constexpr long nanosecondsInSecond = 1'000'000'000;
    timespec& moment = deadline.m_moment;
    ::clock_gettime(CLOCK_MONOTONIC, &moment);
    moment.tv_sec += milliseconds / 1000;
    moment.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (moment.tv_nsec >= nanosecondsInSecond) {
        ++moment.tv_sec;
        moment.tv_nsec -= nanosecondsInSecond;
    }
    deadline.m_never = false;
    return deadline;
}

bool futexWait(const void* word, std::uint32_t expected, const Deadline& deadline,
               FutexScope scope) noexcept
{
    const int saved = errno;
    const long result = ::syscall(SYS_futex, word, futexOperation(FUTEX_WAIT_BITSET, scope),
                                  expected, deadline.moment(), nullptr, FUTEX_BITSET_MATCH_ANY);
    const bool inTime = result == 0 || errno != ETIMEDOUT;
    errno = saved;
    return inTime;
}

void futexWake(const void* word, std::int32_t count, FutexScope scope) noexcept
{
    const int saved = errno;
    ::syscall(SYS_futex, word, futexOperation(FUTEX_WAKE, scope), count, nullptr, nullptr, 0);
    errno = saved;
}

bool futexMove(const void* from, std::uint32_t expected, const void* to,
               std::int32_t count) noexcept
{
    const int saved = errno;
    const long most = count;
    const long result =
        ::syscall(SYS_futex, from, FUTEX_CMP_REQUEUE_PRIVATE, 0, most, to, expected);
    errno = saved;
    return result >= 0;
}

std::int32_t spinTurns() noexcept
{
    const std::int32_t turns = s_turns.load(std::memory_order_relaxed);
    if (turns >= 0) return turns;
    const std::int32_t first = hasOneProcessor() ? 0 : mostTurns;
    s_turns.store(first, std::memory_order_relaxed);
    return first;
}

void noteSpin(std::int32_t turns, bool success) noexcept
{
    if (turns == 0) return;
    std::int32_t next = std::min(turns + fewestTurns, mostTurns);
    if (!success) {
        const bool forgets =
            s_failures.fetch_add(1, std::memory_order_relaxed) % failuresToForget == 0;
        next = forgets ? mostTurns : std::max(turns - turns / fewestTurns, fewestTurns);
    }
    if (next != turns) s_turns.store(next, std::memory_order_relaxed);
}

void RawLock::lockContended() noexcept
{
    if (spinUntil([this] { return !isHeld() && tryLock(); })) return;
    // Whoever comes from sleep leaves the mark of sleepers behind: there may be more of them.
    while (m_state.exchange(AWAITED, std::memory_order_acquire) != FREE) {
        futexWait(&m_state, AWAITED);
    }
}

} // namespace orvcore
