#include "platform/orvcore.h"
#include "platform/posix/internal/Futex.h"
#include "platform/posix/internal/Record.h"

#include <atomic>
#include <cstdint>

namespace orvcore {
namespace {

/// A gate in one word: two flags, and above them the number of times it was opened, by which a
/// waiter passes that wakes up when the gate has been closed again.
class Gate {
public:
    explicit Gate(const char* name) noexcept : m_label(name) {}

    bool isOpen() const noexcept { return (m_state.load(std::memory_order_acquire) & OPEN) != 0; }

    bool pass(const Deadline& deadline) noexcept
    {
        if (spinUntil([this] { return isOpen(); })) return true;
        std::uint32_t state = m_state.load(std::memory_order_acquire);
        const std::uint32_t opened = state / ONE_OPENING;
        for (;;) {
            if ((state & OPEN) != 0 || state / ONE_OPENING != opened) return true;
            if (announce(state) && !futexWait(&m_state, state | AWAITED, deadline)) {
                return m_state.load(std::memory_order_acquire) / ONE_OPENING != opened;
            }
            state = m_state.load(std::memory_order_acquire);
        }
    }

    void open() noexcept
    {
        std::uint32_t state = m_state.load(std::memory_order_relaxed);
        std::uint32_t next = 0;
        do {
            if ((state & OPEN) != 0) return;
            next = ((state & ~AWAITED) + ONE_OPENING) | OPEN;
        } while (!m_state.compare_exchange_weak(state, next, std::memory_order_release,
                                                std::memory_order_relaxed));
        if ((state & AWAITED) != 0) futexWake(&m_state, futexAll);
    }

    void close() noexcept { m_state.fetch_and(~OPEN, std::memory_order_relaxed); }

private:
    static constexpr std::uint32_t OPEN = 1;
    static constexpr std::uint32_t AWAITED = 2; ///< closed, and somebody may sleep
    static constexpr std::uint32_t ONE_OPENING = 4;

    /// Marks the word `state` as waited for; false when it has changed.
    bool announce(std::uint32_t state) noexcept
    {
        return (state & AWAITED) != 0 ||
               m_state.compare_exchange_strong(state, state | AWAITED, std::memory_order_relaxed);
    }

    std::atomic<std::uint32_t> m_state{0};
    Label m_label;
};

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVGateCreate(const char* name, std::uint32_t /*flags*/, ORVHandle* out) noexcept
{
    return createRecord<Gate>(out, name);
}

ORVResult ORVGateWait(ORVHandle gate) noexcept
{
    return ORVGateTimedWait(gate, ORV_INFINITE);
}

ORVResult ORVGateTimedWait(ORVHandle gate, std::uint32_t milliseconds) noexcept
{
    auto* const record = recordOf<Gate>(gate);
    if (record == nullptr) return invalidHandle;
    if (record->isOpen()) return S_OK;
    if (milliseconds == 0) return timedOut;
    return record->pass(Deadline::after(milliseconds)) ? S_OK : timedOut;
}

ORVResult ORVGateTryWait(ORVHandle gate) noexcept
{
    auto* const record = recordOf<Gate>(gate);
    if (record == nullptr) return invalidHandle;
    return record->isOpen() ? S_OK : busy;
}

ORVResult ORVGateOpen(ORVHandle gate) noexcept
{
    auto* const record = recordOf<Gate>(gate);
    if (record == nullptr) return invalidHandle;
    record->open();
    return S_OK;
}

ORVResult ORVGateClose(ORVHandle gate) noexcept
{
    auto* const record = recordOf<Gate>(gate);
    if (record == nullptr) return invalidHandle;
    record->close();
    return S_OK;
}

ORVResult ORVGateDestroy(ORVHandle gate) noexcept
{
    auto* const record = recordOf<Gate>(gate);
    if (record == nullptr) return invalidHandle;
    destroyRecord(record);
    return S_OK;
}
