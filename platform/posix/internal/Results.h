#pragma once

#include "platform/orvcore.h"

#include <cstdint>

/// \file
/// Results that orvcore gives beside those of orvcore.h, by the meaning that hosts know them by.

namespace orvcore {

/// 0x80070000 plus `number`.
constexpr ORVResult systemResult(std::uint32_t number) noexcept
{
    return ORVMakeResult(0x80070000u + number);
}

inline constexpr ORVResult notFound = systemResult(2);
inline constexpr ORVResult pathNotFound = systemResult(3);
inline constexpr ORVResult accessDenied = systemResult(5);
inline constexpr ORVResult invalidName = systemResult(123);
inline constexpr ORVResult libraryNotFound = systemResult(126);
inline constexpr ORVResult symbolNotFound = systemResult(127);
inline constexpr ORVResult nameTooLong = systemResult(206);
inline constexpr ORVResult bufferTooSmall = ORVMakeResult(0x80004009u);

/// The result for the present `errno`; always a failure.
ORVResult lastError() noexcept;

} // namespace orvcore
