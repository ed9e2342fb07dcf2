#include "orv/sync/Semaphore.h"

#include "platform/internal/LockWords.h"

namespace orv::sync {
namespace {

orvcore::CountWord& wordOf(const Handle<ORVSemaphoreDestroy>& handle) noexcept
{
    return orvcore::wordsOf<orvcore::CountWord>(handle.get());
}

} // namespace

Semaphore::Semaphore(std::uint32_t initialCount, const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVSemaphoreCreate(initialCount, name, flags, m_handle.receive()));
}

Semaphore::~Semaphore() noexcept(false) = default;

void Semaphore::wait()
{
    if (wordOf(m_handle).tryTake()) return;
    throwIfFailed(ORVSemaphoreWait(m_handle.get()));
}

bool Semaphore::tryWait() noexcept
{
    return !failed(ORVSemaphoreTryWait(m_handle.get()));
}

void Semaphore::signal()
{
    if (wordOf(m_handle).tryAdd()) return;
    throwIfFailed(ORVSemaphorePost(m_handle.get()));
}

std::int32_t Semaphore::getValue()
{
    std::int32_t value = 0;
    throwIfFailed(ORVSemaphoreGetValue(m_handle.get(), &value));
    return value;
}

} // namespace orv::sync
