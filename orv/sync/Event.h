#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/Object.h"

#include <cstdint>

namespace orv::sync {

/// A signal that lets one waiter pass and resets itself by that. It begins not signalled.
///
/// With nobody waiting, a signal stays for the next wait(); signals do not add up. The name is a
/// label for diagnosis, may be null and shares nothing; `flags` is 0.
///
/// Threads: any; nobody may wait when the event is destroyed.
class ORV_API Event : public Object {
public:
    explicit Event(const char* name = nullptr, std::uint32_t flags = 0);
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() noexcept(false) override;

    void wait() override;

    /// Always false, and leaves the event as it is, signalled or not: wait(0) tries.
    bool tryWait() noexcept override;

    /// Waits for at most `milliseconds`, 0xFFFFFFFF being for ever; false when the time is over.
    virtual bool wait(std::uint32_t milliseconds);

    /// Lets one waiter pass, a present or the next one. Throws ResultException.
    virtual void signal();

private:
    Handle<ORVEventDestroy> m_handle;
};

} // namespace orv::sync
