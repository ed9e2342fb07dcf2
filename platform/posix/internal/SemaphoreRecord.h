#pragma once

#include "platform/internal/LockWords.h"
#include "platform/posix/internal/Record.h"

namespace orvcore {

/// What stands behind the handles of both kinds of semaphores; the word is used by the local one.
struct SemaphoreRecord {
    SemaphoreRecord(std::uint32_t initialCount, bool named) noexcept
        : count(initialCount), isNamed(named)
    {
    }

    CountWord count;
    const bool isNamed;
};

/// A semaphore of this process.
struct LocalSemaphore : SemaphoreRecord {
    LocalSemaphore(std::uint32_t initialCount, const char* name) noexcept
        : SemaphoreRecord(initialCount, false), label(name)
    {
    }

    Label label;
};

} // namespace orvcore
