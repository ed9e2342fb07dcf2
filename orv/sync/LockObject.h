#pragma once

#include "orv/sync/Object.h"

namespace orv::sync {

/// A lock: wait() acquires it, signal() gives it back. Lock holds one for a scope.
class ORV_API LockObject : public Object {
public:
    LockObject() noexcept = default;
    LockObject(const LockObject& other) noexcept;
    LockObject& operator=(const LockObject& other) noexcept;
    ~LockObject() noexcept(false) override;

    void wait() override = 0;
    bool tryWait() override = 0;

    /// Gives the lock back. Throws ResultException.
    virtual void signal() = 0;
};

} // namespace orv::sync
