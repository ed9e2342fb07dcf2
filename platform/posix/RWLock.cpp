#include "platform/internal/LockWords.h"
#include "platform/orvcore.h"
#include "platform/posix/internal/Record.h"

namespace orvcore {
namespace {

struct RWLock : SharedWord {
    explicit RWLock(const char* name) noexcept : label(name) {}

    Label label;
};

ORVResult resultOfTry(bool acquired) noexcept
{
    return acquired ? S_OK : busy;
}

ORVResult release(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    return record->release() ? S_OK : notOwner;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVRWLockCreate(const char* name, std::uint32_t /*flags*/, ORVHandle* out) noexcept
{
    return createRecord<RWLock>(out, name);
}

ORVResult ORVRWLockAcquireRead(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    if (!record->tryRead()) record->readContended();
    return S_OK;
}

ORVResult ORVRWLockAcquireWrite(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    if (!record->tryWrite()) record->writeContended();
    return S_OK;
}

ORVResult ORVRWLockTryAcquireRead(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    return resultOfTry(record->tryRead());
}

ORVResult ORVRWLockTryAcquireWrite(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    return resultOfTry(record->tryWrite());
}

ORVResult ORVRWLockReleaseRead(ORVHandle lock) noexcept
{
    return release(lock);
}

ORVResult ORVRWLockReleaseWrite(ORVHandle lock) noexcept
{
    return release(lock);
}

ORVResult ORVRWLockDestroy(ORVHandle lock) noexcept
{
    auto* const record = recordOf<RWLock>(lock);
    if (record == nullptr) return invalidHandle;
    if (record->isHeld()) return busy;
    destroyRecord(record);
    return S_OK;
}
