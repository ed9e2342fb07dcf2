#pragma once

#include "orv/sync/LockObject.h"

#include <cstdint>

namespace orv::sync {

/// A lock that locks nothing, for classes that take any LockObject where no locking is wanted.
class ORV_API FakeMutex : public LockObject {
public:
    /// Ignores both arguments.
    explicit FakeMutex(const char* name = nullptr, std::uint32_t flags = 0) noexcept;
    FakeMutex(const FakeMutex&) = delete;
    FakeMutex& operator=(const FakeMutex&) = delete;
    ~FakeMutex() noexcept(false) override;

    void wait() override;
    /// Always true.
    bool tryWait() noexcept override;
    void signal() override;
};

} // namespace orv::sync
