#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/LockObject.h"

#include <cstdint>

namespace orv::sync {

/// A lock that one thread holds at a time, and may acquire again while it holds it: each wait()
/// wants a signal().
///
/// Without contention neither makes a system call. The name is a label for diagnosis, may be null
/// and shares nothing; `flags` is 0.
///
/// Threads: any. Destroying a mutex that another thread holds throws ResultException and leaves
/// what that thread holds alive.
class ORV_API Mutex : public LockObject {
public:
    explicit Mutex(const char* name = nullptr, std::uint32_t flags = 0);
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;
    ~Mutex() noexcept(false) override;

    void wait() override;

    /// Acquires if the mutex is free or the caller's. Never throws: a fault reads as false.
    bool tryWait() noexcept override;

    /// Throws ResultException when the caller does not hold the mutex.
    void signal() override;

private:
    Handle<ORVMutexDestroy> m_handle;
};

} // namespace orv::sync
