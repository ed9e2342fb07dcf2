#include "platform/internal/LockWords.h"
#include "platform/posix/internal/Futex.h"

namespace orvcore {
namespace {

/// The half of the word that counts, on a little-endian machine.
const void* freeingWord(const std::atomic<std::uint64_t>& state) noexcept
{
    return reinterpret_cast<const std::uint32_t*>(&state) + 1;
}

} // namespace

void SharedWord::readContended() noexcept
{
    if (spinUntil([this] { return (load() & WRITER) == 0 && tryRead(); })) return;
    while (!tryRead()) sleepWhile(WRITER, READERS_SLEEP);
}

void SharedWord::writeContended() noexcept
{
    if (spinUntil([this] { return !isHeld() && tryWrite(); })) return;
    while (!tryWriteAnd(WRITERS_SLEEP)) sleepWhile(HELD, WRITERS_SLEEP);
}

void SharedWord::sleepWhile(State side, State mark) noexcept
{
    State state = load();
    do {
        if ((state & side) == 0) return;
    } while (!exchange(state, state | mark, std::memory_order_relaxed));
    futexWait(freeingWord(m_state), static_cast<std::uint32_t>(state >> 32));
}

bool SharedWord::release() noexcept
{
    State state = load();
    for (;;) {
        if ((state & HELD) == 0) return false;
        const bool writing = (state & WRITER) != 0;
        const bool frees = writing || (state & HELD) == 1;
        const bool wakes = frees && (state & SLEEPERS) != 0;
        const State lower = writing ? state - WRITER : state - 1;
        const State next = wakes ? (lower & ~SLEEPERS) + oneFreeing : lower;
        if (!exchange(state, next, std::memory_order_release)) continue;
        if (wakes) wake(state);
        return true;
    }
}

void SharedWord::wake(State state) const noexcept
{
    // Readers and writers sleep on one word, so one writer alone can be woken only where no reader
    // sleeps.
    futexWake(freeingWord(m_state), (state & READERS_SLEEP) != 0 ? futexAll : 1);
}

} // namespace orvcore
