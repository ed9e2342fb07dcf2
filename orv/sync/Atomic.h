#pragma once

#include "orv/Object.h"

namespace orv::sync {

/// A name among the run-time classes, with no operation of its own.
class ORV_API Atomic final : public ::orv::Object {
public:
    Atomic() noexcept = default;
    ~Atomic() noexcept(false) override;
};

/// A name among the run-time classes, with no operation of its own.
class ORV_API FakeAtomic final : public ::orv::Object {
public:
    FakeAtomic() noexcept = default;
    ~FakeAtomic() noexcept(false) override;
};

} // namespace orv::sync
