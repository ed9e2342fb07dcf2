#include "platform/internal/LockWords.h"
#include "platform/orvcore.h"
#include "platform/posix/internal/Record.h"

namespace orvcore {
namespace {

struct MutexRecord : MutexWords {
    explicit MutexRecord(const char* name) noexcept : label(name) {}

    Label label;
};

[[gnu::noinline]] ORVResult acquireAgainOrWait(MutexRecord& record) noexcept
{
    if (record.owner.isMine()) {
        ++record.depth;
    } else {
        record.owner.acquireContended();
    }
    return S_OK;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVMutexCreate(const char* name, std::uint32_t /*flags*/, ORVHandle* out) noexcept
{
    return createRecord<MutexRecord>(out, name);
}

ORVResult ORVMutexAcquire(ORVHandle mutex) noexcept
{
    auto* const record = recordOf<MutexRecord>(mutex);
    if (record == nullptr) return invalidHandle;
    return record->owner.tryAcquire() ? S_OK : acquireAgainOrWait(*record);
}

ORVResult ORVMutexTryAcquire(ORVHandle mutex) noexcept
{
    auto* const record = recordOf<MutexRecord>(mutex);
    if (record == nullptr) return invalidHandle;
    if (record->owner.tryAcquire()) return S_OK;
    if (!record->owner.isMine()) return busy;
    ++record->depth;
    return S_OK;
}

ORVResult ORVMutexRelease(ORVHandle mutex) noexcept
{
    auto* const record = recordOf<MutexRecord>(mutex);
    if (record == nullptr) return invalidHandle;
    if (!record->owner.isMine()) return notOwner;
    if (record->depth > 0) {
        --record->depth;
        return S_OK;
    }
    record->owner.release();
    return S_OK;
}

ORVResult ORVMutexDestroy(ORVHandle mutex) noexcept
{
    auto* const record = recordOf<MutexRecord>(mutex);
    if (record == nullptr) return invalidHandle;
    if (record->owner.isHeld() && !record->owner.isMine()) return busy;
    destroyRecord(record);
    return S_OK;
}
