#include "orv/sync/ReaderWriterLock.h"

#include "platform/internal/LockWords.h"

namespace orv::sync {
namespace {

orvcore::SharedWord& wordOf(const Handle<ORVRWLockDestroy>& handle) noexcept
{
    return orvcore::wordsOf<orvcore::SharedWord>(handle.get());
}

} // namespace

ReaderWriterLock::ReaderWriterLock(const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVRWLockCreate(name, flags, m_handle.receive()));
}

ReaderWriterLock::~ReaderWriterLock() noexcept(false) = default;

void ReaderWriterLock::wait()
{
    if (wordOf(m_handle).tryWrite()) return;
    throwIfFailed(ORVRWLockAcquireWrite(m_handle.get()));
}

bool ReaderWriterLock::tryWait() noexcept
{
    return !failed(ORVRWLockTryAcquireWrite(m_handle.get()));
}

void ReaderWriterLock::signal()
{
    if (wordOf(m_handle).tryRelease()) return;
    throwIfFailed(ORVRWLockReleaseWrite(m_handle.get()));
}

void ReaderWriterLock::waitShared()
{
    if (wordOf(m_handle).tryRead()) return;
    throwIfFailed(ORVRWLockAcquireRead(m_handle.get()));
}

bool ReaderWriterLock::tryWaitShared() noexcept
{
    return !failed(ORVRWLockTryAcquireRead(m_handle.get()));
}

void ReaderWriterLock::signalShared()
{
    if (wordOf(m_handle).tryRelease()) return;
    throwIfFailed(ORVRWLockReleaseRead(m_handle.get()));
}

} // namespace orv::sync
