#pragma once

#include "orv/sync/LockObject.h"

#include <exception>

namespace orv::sync {

/// Holds a lock for a scope.
///
///     const sync::Lock lock(m_lock);
///
/// A failure to give the lock back is thrown out of the destructor, unless an exception ends the
/// scope, which then goes on alone.
class Lock {
public:
    /// Acquires `lock`, which must outlive this object.
    explicit Lock(LockObject& lock) : m_lock(&lock) { m_lock->wait(); }

    /// The same; null holds nothing.
    explicit Lock(LockObject* lock) : m_lock(lock)
    {
        if (m_lock != nullptr) m_lock->wait();
    }

    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    ~Lock() noexcept(false)
    {
        if (m_lock == nullptr) return;
        try {
            m_lock->signal();
        } catch (...) {
            if (std::uncaught_exceptions() == m_unwinding) throw;
        }
    }

private:
    LockObject* m_lock;
    int m_unwinding = std::uncaught_exceptions();
};

} // namespace orv::sync
