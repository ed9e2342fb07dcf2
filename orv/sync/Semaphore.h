#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/Object.h"

#include <cstdint>

namespace orv::sync {

/// A count that wait() takes 1 from, waiting while it is 0, and signal() adds 1 to.
///
/// It belongs to this process; orv::ipc::Semaphore is shared by name. The name here is a label for
/// diagnosis, may be null and shares nothing; `flags` is 0.
///
/// Threads: any; nobody may wait when the semaphore is destroyed.
/// Bounds: counts of 0 to 2^31 - 1.
class ORV_API Semaphore : public Object {
public:
    explicit Semaphore(std::uint32_t initialCount, const char* name = nullptr,
                       std::uint32_t flags = 0);
    Semaphore(const Semaphore&) = delete;
    Semaphore& operator=(const Semaphore&) = delete;
    ~Semaphore() noexcept(false) override;

    void wait() override;

    /// Takes 1 if there is 1. Never throws: a fault reads as false.
    bool tryWait() noexcept override;

    /// Throws ResultException, with nothing done, when the count is at its largest.
    virtual void signal();

    /// The count at this moment.
    virtual std::int32_t getValue();

private:
    Handle<ORVSemaphoreDestroy> m_handle;
};

} // namespace orv::sync
