#include "platform/internal/LockWords.h"
#include "platform/posix/internal/Futex.h"

namespace orvcore {
namespace {

/// The half of the word that holds the value, on a little-endian machine.
const void* valueWord(const std::atomic<std::uint64_t>& state) noexcept
{
    return &state;
}

} // namespace

bool CountWord::take(const Deadline& deadline) noexcept
{
    if (spinUntil([this] { return value() > 0 && tryTake(); })) return true;

    m_state.fetch_add(oneSleeper, std::memory_order_relaxed);
    return takeAsSleeper(deadline);
}

bool CountWord::takeAsSleeper(const Deadline& deadline) noexcept
{
    for (;;) {
        if (takeAnd(oneSleeper)) return true;
        if (!futexWait(valueWord(m_state), 0, deadline)) return !leave();
    }
}

/// Gives up sleeping; false when 1 was there after all and has been taken.
bool CountWord::leave() noexcept
{
    std::uint64_t state = m_state.load(std::memory_order_relaxed);
    for (;;) {
        const bool taking = valueOf(state) > 0;
        const std::uint64_t next = state - oneSleeper - (taking ? 1 : 0);
        if (m_state.compare_exchange_weak(state, next, std::memory_order_acquire,
                                          std::memory_order_relaxed)) {
            return !taking;
        }
    }
}

template <class Limit>
bool CountWord::addBelow(Limit limit) noexcept
{
    State state = m_state.load(std::memory_order_relaxed);
    do {
        if (valueOf(state) >= limit(sleepersOf(state))) return false;
    } while (!m_state.compare_exchange_weak(state, state + 1, std::memory_order_release,
                                            std::memory_order_relaxed));
    if (sleepersOf(state) > 0) futexWake(valueWord(m_state), 1);
    return true;
}

bool CountWord::add() noexcept
{
    return addBelow([](std::uint32_t) { return largest; });
}

void CountWord::addOnePerSleeper() noexcept
{
    addBelow([](std::uint32_t sleepers) { return sleepers > 1 ? sleepers : 1; });
}

} // namespace orvcore
