#include "orv/ipc/SemaphoreR.h"

#include "orv/sync/Lock.h"
#include "platform/files.h"
#include "platform/threads.h"

namespace orv::ipc {

SemaphoreR::SemaphoreR(const char* name, std::uint32_t initialCount, sync::Mutex* lock)
    : Semaphore(name, initialCount),
      m_lock(lock != nullptr ? Reference<sync::Mutex>(lock) : makeReference<sync::Mutex>())
{
}

SemaphoreR::~SemaphoreR() noexcept(false) = default;

void SemaphoreR::wait()
{
    throwIfFailed(take([](ORVHandle handle) { return ORVSemaphoreWait(handle); }));
}

bool SemaphoreR::tryWait() noexcept
{
    try {
        return !failed(take([](ORVHandle handle) { return ORVSemaphoreTryWait(handle); }));
    } catch (...) {
        return false;
    }
}

/// Takes the count with `operation`, unless the caller has it.
Result SemaphoreR::take(Result (*operation)(ORVHandle))
{
    const Reference<sync::Mutex> mutex = m_lock;
    const sync::Lock lock(*mutex);
    const std::uint32_t caller = orvcore::currentThreadId();
    if (m_owner == caller) {
        ++m_holds;
        return S_OK;
    }
    const Result result = operation(handle());
    if (failed(result)) return result;
    m_owner = caller;
    m_holds = 1;
    m_afterDeath = result > 0;
    return result;
}

void SemaphoreR::signal()
{
    const Reference<sync::Mutex> mutex = m_lock;
    const sync::Lock lock(*mutex);
    if (m_owner == 0 || m_owner != orvcore::currentThreadId()) return;
    if (m_holds > 1) {
        --m_holds;
        return;
    }
    Semaphore::signal();
    m_owner = 0;
    m_holds = 0;
    m_afterDeath = false;
}

void SemaphoreR::noteFileSize(std::int64_t size) noexcept
{
    orvcore::noteFileSize(handle(), size);
}

std::int64_t SemaphoreR::recallFileSize() const noexcept
{
    return orvcore::recallFileSize(handle());
}

} // namespace orv::ipc
