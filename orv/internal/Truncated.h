#pragma once

#include <cstdint>
#include <limits>

namespace orv::internal {

/// `value` cut toward zero; the least integer where it does not fit or is a NaN.
inline std::int64_t truncated(double value) noexcept
{
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (value >= -limit && value < limit) return static_cast<std::int64_t>(value);
    return std::numeric_limits<std::int64_t>::min();
}

} // namespace orv::internal
