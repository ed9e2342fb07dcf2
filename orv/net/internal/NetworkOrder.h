#pragma once

#include <bit>
#include <cstdint>

/// \file
/// Ports between the host's byte order and the network's.

namespace orv::net::internal {

/// `value` with the byte order of the network, or back.
constexpr std::uint16_t toNetworkOrder(std::uint16_t value) noexcept
{
    if constexpr (std::endian::native == std::endian::big) return value;
    return static_cast<std::uint16_t>(value << 8 | value >> 8);
}

} // namespace orv::net::internal
