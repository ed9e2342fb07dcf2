#pragma once

#include <cstddef>
#include <cstring>

namespace orv::crypto::internal {

/// Keeps the compiler from leaving out what was written to memory that is about to be freed.
inline void keepWritten(void* memory) noexcept
{
    __asm__ __volatile__("" : : "r"(memory) : "memory");
}

/// Zeroes memory that held secrets.
inline void wipe(void* memory, std::size_t size) noexcept
{
    std::memset(memory, 0, size);
    keepWritten(memory);
}

} // namespace orv::crypto::internal
