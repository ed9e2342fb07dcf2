#include "platform/internal/LockWords.h"
#include "platform/orvcore.h"
#include "platform/posix/internal/Deadline.h"
#include "platform/posix/internal/Record.h"

namespace orvcore {
namespace {

struct EventRecord {
    explicit EventRecord(const char* name) noexcept : label(name) {}

    CountWord count{0};
    Label label;
};

[[gnu::noinline]] ORVResult waitFor(EventRecord& record, std::uint32_t milliseconds) noexcept
{
    return record.count.take(Deadline::after(milliseconds)) ? S_OK : timedOut;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVEventCreate(const char* name, std::uint32_t /*flags*/, ORVHandle* out) noexcept
{
    return createRecord<EventRecord>(out, name);
}

ORVResult ORVEventWait(ORVHandle event) noexcept
{
    auto* const record = recordOf<EventRecord>(event);
    if (record == nullptr) return invalidHandle;
    return record->count.tryTake() ? S_OK : waitFor(*record, ORV_INFINITE);
}

ORVResult ORVEventTimedWait(ORVHandle event, std::uint32_t milliseconds) noexcept
{
    auto* const record = recordOf<EventRecord>(event);
    if (record == nullptr) return invalidHandle;
    if (record->count.tryTake()) return S_OK;
    return milliseconds == 0 ? timedOut : waitFor(*record, milliseconds);
}

ORVResult ORVEventSignal(ORVHandle event) noexcept
{
    auto* const record = recordOf<EventRecord>(event);
    if (record == nullptr) return invalidHandle;
    record->count.addOnePerSleeper();
    return S_OK;
}

ORVResult ORVEventDestroy(ORVHandle event) noexcept
{
    auto* const record = recordOf<EventRecord>(event);
    if (record == nullptr) return invalidHandle;
    destroyRecord(record);
    return S_OK;
}
