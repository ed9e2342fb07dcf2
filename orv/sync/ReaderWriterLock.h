#pragma once

#include "orv/sync/Handle.h"
#include "orv/sync/LockObject.h"

#include <cstdint>

namespace orv::sync {

/// A lock that many readers share or one writer has alone.
///
/// As a LockObject it is the writer's side. Readers go before waiting writers, so one thread may
/// read-lock twice. signal() and signalShared() both give back one hold of whichever side is held.
/// The name is a label for diagnosis, may be null and shares nothing; `flags` is 0.
///
/// Threads: any; destroying a lock that is held throws ResultException and leaves it to its
/// holders.
class ORV_API ReaderWriterLock : public LockObject {
public:
    explicit ReaderWriterLock(const char* name = nullptr, std::uint32_t flags = 0);
    ReaderWriterLock(const ReaderWriterLock&) = delete;
    ReaderWriterLock& operator=(const ReaderWriterLock&) = delete;
    ~ReaderWriterLock() noexcept(false) override;

    /// Acquires for writing. A writer that waits for itself, or for its own reading, waits for
    /// ever.
    void wait() override;

    /// Acquires for writing if nobody holds the lock. Never throws: a fault reads as false.
    bool tryWait() noexcept override;

    /// Throws ResultException when nobody holds the lock.
    void signal() override;

    /// Acquires for reading.
    virtual void waitShared();

    /// Acquires for reading if no writer holds the lock. Never throws: a fault reads as false.
    virtual bool tryWaitShared() noexcept;

    /// Throws ResultException when nobody holds the lock.
    virtual void signalShared();

private:
    Handle<ORVRWLockDestroy> m_handle;
};

} // namespace orv::sync
