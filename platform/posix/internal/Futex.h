#pragma once

#include "platform/posix/internal/Deadline.h"

#include <atomic>
#include <cstdint>

/// \file
/// Sleeping on a word of memory. The word is all that threads agree by; what they guard with it is
/// ordered by the atomic operations on the word, never by the sleep.

namespace orvcore {

/// Who may sleep on a word.
enum class FutexScope {
    Process,   ///< threads of this process
    Processes, ///< threads of all processes that map the word
};

/// Sleeps while `*word` is `expected`. Returns false when `deadline` passed; true for a wake-up, an
/// interruption or another value, upon which the caller looks at the word again.
bool futexWait(const void* word, std::uint32_t expected, const Deadline& deadline = Deadline(),
               FutexScope scope = FutexScope::Process) noexcept;

/// Wakes at most `count` sleepers. The memory may be gone by now: then nobody is woken.
void futexWake(const void* word, std::int32_t count,
               FutexScope scope = FutexScope::Process) noexcept;

/// Lets at most `count` sleepers of `*from`, within this process, sleep on at `*to` if `*from` is
/// `expected`; false, with nobody moved, if it is not.
bool futexMove(const void* from, std::uint32_t expected, const void* to,
               std::int32_t count) noexcept;

inline constexpr std::int32_t futexAll = 0x7FFFFFFF;

/// Turns worth looking at a word again before sleeping. They go down while that is in vain, as on a
/// machine with more to do than processors, and up again with success; 0 on one processor.
std::int32_t spinTurns() noexcept;

/// To be called after such a loop of `turns`, with what came of it.
void noteSpin(std::int32_t turns, bool success) noexcept;

/// One turn of such a loop.
inline void spinPause() noexcept
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

/// Looks at `condition` for a short time; whether it came true.
template <class Condition>
bool spinUntil(Condition condition) noexcept
{
    const std::int32_t turns = spinTurns();
    bool success = false;
    for (std::int32_t turn = 0; turn < turns && !success; ++turn) {
        spinPause();
        success = condition();
    }
    noteSpin(turns, success);
    return success;
}

} // namespace orvcore
