#include "platform/orvcore.h"
#include "platform/posix/internal/NamedSemaphore.h"
#include "platform/posix/internal/SemaphoreRecord.h"

using namespace orvcore;

namespace {

NamedSemaphore& namedOf(SemaphoreRecord& record) noexcept
{
    return static_cast<NamedSemaphore&>(record);
}

[[gnu::noinline]] ORVResult waitFor(CountWord& count) noexcept
{
    count.take(Deadline());
    return S_OK;
}

} // namespace

ORVResult ORVSemaphoreCreate(std::uint32_t initialCount, const char* name, std::uint32_t /*flags*/,
                             ORVHandle* out) noexcept
{
    if (initialCount > CountWord::largest) return E_INVALIDARG;
    return createRecord<LocalSemaphore>(out, initialCount, name);
}

ORVResult ORVSemaphoreWait(ORVHandle semaphore) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(semaphore);
    if (record == nullptr) return invalidHandle;
    if (record->isNamed) return namedOf(*record).wait();
    return record->count.tryTake() ? S_OK : waitFor(record->count);
}

ORVResult ORVSemaphoreTryWait(ORVHandle semaphore) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(semaphore);
    if (record == nullptr) return invalidHandle;
    if (record->isNamed) return namedOf(*record).tryWait();
    return record->count.tryTake() ? S_OK : busy;
}

ORVResult ORVSemaphorePost(ORVHandle semaphore) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(semaphore);
    if (record == nullptr) return invalidHandle;
    const bool added = record->isNamed ? namedOf(*record).post() : record->count.add();
    return added ? S_OK : tooManyPosts;
}

ORVResult ORVSemaphoreGetValue(ORVHandle semaphore, std::int32_t* out) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(semaphore);
    if (record == nullptr) return invalidHandle;
    if (out == nullptr) return E_POINTER;
    const std::uint32_t value = record->isNamed ? namedOf(*record).value() : record->count.value();
    *out = static_cast<std::int32_t>(value);
    return S_OK;
}

ORVResult ORVSemaphoreDestroy(ORVHandle semaphore) noexcept
{
    auto* const record = recordOf<SemaphoreRecord>(semaphore);
    if (record == nullptr || record->isNamed) return invalidHandle;
    destroyRecord(static_cast<LocalSemaphore*>(record));
    return S_OK;
}
