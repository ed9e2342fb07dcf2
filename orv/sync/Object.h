#pragma once

#include "orv/Object.h"

namespace orv::sync {

/// What a thread can wait for.
///
/// Below this class and within `orv::sync` the bare name `Object` means this one; the root of the
/// library is `::orv::Object` there.
class ORV_API Object : public ::orv::Object {
public:
    Object() noexcept = default;
    Object(const Object& other) noexcept;
    Object& operator=(const Object& other) noexcept;
    ~Object() noexcept(false) override;

    /// Waits as long as it takes. Throws ResultException.
    virtual void wait() = 0;

    /// Does not wait; tells whether a wait() would have passed, and then it has.
    virtual bool tryWait() = 0;
};

} // namespace orv::sync
