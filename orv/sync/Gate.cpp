#include "orv/sync/Gate.h"

#include "orv/sync/internal/TimedWait.h"

namespace orv::sync {

Gate::Gate(const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVGateCreate(name, flags, m_handle.receive()));
}

Gate::~Gate() noexcept(false) = default;

void Gate::wait()
{
    throwIfFailed(ORVGateWait(m_handle.get()));
}

bool Gate::tryWait() noexcept
{
    return !failed(ORVGateTryWait(m_handle.get()));
}

bool Gate::wait(std::uint32_t milliseconds)
{
    return passedInTime(ORVGateTimedWait(m_handle.get(), milliseconds));
}

void Gate::open()
{
    throwIfFailed(ORVGateOpen(m_handle.get()));
}

void Gate::close()
{
    throwIfFailed(ORVGateClose(m_handle.get()));
}

} // namespace orv::sync
