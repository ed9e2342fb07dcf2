#include "orv/ipc/Semaphore.h"

namespace orv::ipc {

Semaphore::Semaphore(const char* name, std::uint32_t initialCount)
{
    throwIfFailed(ORVNamedSemOpen(name, initialCount, m_handle.receive()));
}

Semaphore::~Semaphore() noexcept(false) = default;

void Semaphore::wait()
{
    throwIfFailed(ORVSemaphoreWait(handle()));
}

bool Semaphore::tryWait() noexcept
{
    return !failed(ORVSemaphoreTryWait(handle()));
}

void Semaphore::signal()
{
    throwIfFailed(ORVSemaphorePost(handle()));
}

std::int32_t Semaphore::getValue()
{
    std::int32_t value = 0;
    throwIfFailed(ORVSemaphoreGetValue(handle(), &value));
    return value;
}

} // namespace orv::ipc
