#include "platform/internal/LockWords.h"
#include "platform/orvcore.h"
#include "platform/posix/internal/Futex.h"
#include "platform/posix/internal/Record.h"

#include <atomic>
#include <cstdint>

namespace orvcore {
namespace {

class Condition : public ConditionWords {
public:
    explicit Condition(const char* name) noexcept : m_label(name) {}

    /// To be called by the owner; false when `deadline` passed.
    bool wait(const Deadline& deadline) noexcept
    {
        waiters.fetch_add(1, std::memory_order_relaxed);
        const std::uint32_t signals = m_signals.load(std::memory_order_relaxed);
        owner.release();
        while (!isSignalledSince(signals) && futexWait(&m_signals, signals, deadline)) {
        }
        owner.acquireAsSleeper();
        waiters.fetch_sub(1, std::memory_order_relaxed);
        return isSignalledSince(signals);
    }

    void wake(std::int32_t count) noexcept
    {
        if (hasNoWaiter()) return;
        const std::uint32_t signals = m_signals.fetch_add(1, std::memory_order_relaxed) + 1;
        // Woken now, a waiter would go to sleep again for the lock that the caller holds.
        if (owner.isMine() && owner.adoptSleepers(&m_signals, signals, count)) return;
        futexWake(&m_signals, count);
    }

private:
    bool isSignalledSince(std::uint32_t signals) const noexcept
    {
        return m_signals.load(std::memory_order_relaxed) != signals;
    }

    std::atomic<std::uint32_t> m_signals{0}; ///< those that found a waiter
    Label m_label;
};

ORVResult wake(ORVHandle condition, std::int32_t count) noexcept
{
    auto* const record = recordOf<Condition>(condition);
    if (record == nullptr) return invalidHandle;
    record->wake(count);
    return S_OK;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVConditionCreate(const char* name, std::uint32_t /*flags*/, ORVHandle* out) noexcept
{
    return createRecord<Condition>(out, name);
}

ORVResult ORVConditionAcquire(ORVHandle condition) noexcept
{
    auto* const record = recordOf<Condition>(condition);
    if (record == nullptr) return invalidHandle;
    if (record->owner.tryAcquire()) return S_OK;
    if (record->owner.isMine()) return wouldDeadlock;
    record->owner.acquireContended();
    return S_OK;
}

ORVResult ORVConditionRelease(ORVHandle condition) noexcept
{
    auto* const record = recordOf<Condition>(condition);
    if (record == nullptr) return invalidHandle;
    if (!record->owner.isMine()) return notOwner;
    record->owner.release();
    return S_OK;
}

ORVResult ORVConditionWait(ORVHandle condition) noexcept
{
    return ORVConditionTimedWait(condition, ORV_INFINITE);
}

ORVResult ORVConditionTimedWait(ORVHandle condition, std::uint32_t milliseconds) noexcept
{
    auto* const record = recordOf<Condition>(condition);
    if (record == nullptr) return invalidHandle;
    if (!record->owner.isMine()) return notOwner;
    return record->wait(Deadline::after(milliseconds)) ? S_OK : timedOut;
}

ORVResult ORVConditionSignal(ORVHandle condition) noexcept
{
    return wake(condition, 1);
}

ORVResult ORVConditionBroadcast(ORVHandle condition) noexcept
{
    return wake(condition, futexAll);
}

ORVResult ORVConditionDestroy(ORVHandle condition) noexcept
{
    auto* const record = recordOf<Condition>(condition);
    if (record == nullptr) return invalidHandle;
    if (record->owner.isHeld()) return busy;
    destroyRecord(record);
    return S_OK;
}
