#include "orv/sync/Event.h"

#include "orv/sync/internal/TimedWait.h"

namespace orv::sync {

Event::Event(const char* name, std::uint32_t flags)
{
    throwIfFailed(ORVEventCreate(name, flags, m_handle.receive()));
}

Event::~Event() noexcept(false) = default;

void Event::wait()
{
    throwIfFailed(ORVEventWait(m_handle.get()));
}

bool Event::tryWait() noexcept
{
    return false;
}

bool Event::wait(std::uint32_t milliseconds)
{
    return passedInTime(ORVEventTimedWait(m_handle.get(), milliseconds));
}

void Event::signal()
{
    throwIfFailed(ORVEventSignal(m_handle.get()));
}

} // namespace orv::sync
