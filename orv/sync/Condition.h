#pragma once

#include "orv/Object.h"
#include "platform/orvcore.h"

#include <cstdint>

namespace orv::sync {

/// A lock together with a place to wait at for what it guards.
///
///     const Condition::Holder holder(m_condition);
///     while (m_queue.isEmpty()) m_condition.wait();
///
/// The lock is not recursive; waiting gives it back and takes it again. A wait may end without a
/// signal, so what is waited for is looked at again. The name is a label for diagnosis, may be
/// null and shares nothing; `flags` is 0.
///
/// It is no LockObject. Threads: any; nobody may wait when the condition is destroyed.
/// Every failure is a ResultException; that of the destructor is dropped.
class ORV_API Condition : public ::orv::Object {
public:
    /// Holds the lock of a condition for a scope.
    ///
    /// A failure to give it back is thrown out of the destructor, unless an exception ends the
    /// scope, which then goes on alone.
    class ORV_API Holder {
    public:
        /// Acquires the lock of `condition`, which must outlive this object.
        explicit Holder(Condition& condition);
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;
        ~Holder() noexcept(false);

    private:
        Condition& m_condition;
        int m_unwinding;
    };

    explicit Condition(const char* name = nullptr, std::uint32_t flags = 0);
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;
    ~Condition() noexcept(false) override;

    /// Throws when the caller holds the lock already.
    void acquire();

    /// Throws when the caller does not hold the lock.
    void release();

    /// Waits for a signal. Throws when the caller does not hold the lock.
    void wait();

    /// The same for at most `milliseconds`, 0xFFFFFFFF being for ever. The end of the time is
    /// thrown too, as ResultException with E_TIMED_OUT; the lock is held then as well.
    void wait(std::uint32_t milliseconds);

    /// Wakes one waiter.
    void signal();

    /// Wakes all waiters.
    void broadcast();

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
};

} // namespace orv::sync
