#pragma once

#include "orv/Failure.h"

#include <cstdint>
#include <limits>

/// \file
/// When the hash tables of this folder grow, and how far.

namespace orv::collections::internal {

/// The buckets of a table made for `size` entries.
constexpr std::int32_t capacityFor(std::int32_t size) noexcept
{
    return size <= 5 ? 11 : static_cast<std::int32_t>(static_cast<std::uint32_t>(size) * 2);
}

/// The number of entries at which one more makes the table grow: a product in 32-bit floating
/// point, cut to an integer and, where it is none, to the ends of the range.
constexpr std::int32_t thresholdOf(std::int32_t capacity, float loadFactor) noexcept
{
    const float entries = static_cast<float>(capacity) * loadFactor;
    if (entries <= -2147483648.0F) return std::numeric_limits<std::int32_t>::min();
    return entries < 2147483648.0F ? static_cast<std::int32_t>(entries)
                                   : std::numeric_limits<std::int32_t>::max();
}

/// The buckets after a growth.
inline std::int32_t grownCapacity(std::int32_t capacity)
{
    constexpr std::int32_t largest = (std::numeric_limits<std::int32_t>::max() - 1) / 2;
    if (capacity > largest) throwOutOfMemory();
    return capacity * 2 + 1;
}

} // namespace orv::collections::internal
