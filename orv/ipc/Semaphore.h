#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/Object.h"

#include <cstdint>

namespace orv::ipc {

/// A count that the processes of one user on this machine share by its name.
///
/// wait() takes 1 off it, waiting while it is 0, and signal() adds 1. Any text is a name, slashes
/// too; null and the empty text make one that nobody else finds.
///
/// The count lives as long as some process has it open: the first opener gives it its value, later
/// ones take it as it is, and the last one leaves nothing behind. What a process holds when it ends
/// or is killed, or when it destroys this object, goes back into the count within a second, but
/// never above the first value.
///
/// Threads: any; nobody may wait when this object is destroyed. A failure is a ResultException; one
/// to close the object comes out of the destructor, unless an exception is on its way already.
/// Bounds: counts of 0 to 2^31 - 1; 4096 objects of one name at a time.
class ORV_API Semaphore : public sync::Object {
public:
    Semaphore(const char* name, std::uint32_t initialCount);
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;
    ~Semaphore() noexcept(false) override;

    void wait() override;

    /// Takes 1 if there is 1. Never throws: a fault reads as false.
    bool tryWait() noexcept override;

    /// Throws with nothing done when the count is at its largest.
    virtual void signal();

    /// The count at this moment.
    virtual std::int32_t getValue();

protected:
    /// For the ORVSemaphore... operations.
    ORVHandle handle() const noexcept { return m_handle.get(); }

private:
    sync::Handle<ORVNamedSemClose> m_handle;
};

} // namespace orv::ipc
