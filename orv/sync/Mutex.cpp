#include "orv/sync/Mutex.h"

#include "platform/internal/LockWords.h"

namespace orv::sync {
namespace {

orvcore::MutexWords& wordsOf(const Handle<ORVMutexDestroy>& handle) noexcept
{
    return orvcore::wordsOf<orvcore::MutexWords>(handle.get());
}

} // namespace

Mutex::Mutex(const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVMutexCreate(name, flags, m_handle.receive()));
}

Mutex::~Mutex() noexcept(false) = default;

void Mutex::wait()
{
    if (wordsOf(m_handle).owner.tryAcquire()) return;
    throwIfFailed(ORVMutexAcquire(m_handle.get()));
}

bool Mutex::tryWait() noexcept
{
    return !failed(ORVMutexTryAcquire(m_handle.get()));
}

void Mutex::signal()
{
    if (wordsOf(m_handle).tryRelease()) return;
    throwIfFailed(ORVMutexRelease(m_handle.get()));
}

} // namespace orv::sync
