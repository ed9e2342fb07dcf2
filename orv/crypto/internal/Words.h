#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// \file
/// Words of 32 bits in bytes of either order, at any address.

namespace orv::crypto::internal {

template <std::endian order>
std::uint32_t loadWord(const signed char* bytes) noexcept
{
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return order == std::endian::native ? word : __builtin_bswap32(word);
}

template <std::endian order>
void storeWord(signed char* bytes, std::uint32_t word) noexcept
{
    if (order != std::endian::native) word = __builtin_bswap32(word);
    std::memcpy(bytes, &word, sizeof word);
}

} // namespace orv::crypto::internal
