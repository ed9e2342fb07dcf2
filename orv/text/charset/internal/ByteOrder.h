#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// \file
/// Words in byte order for the UTF-16 and UTF-32 converters.

namespace orv::text::charset::internal {

constexpr std::uint16_t swapped(std::uint16_t word) noexcept
{
    return static_cast<std::uint16_t>(word << 8 | word >> 8);
}

constexpr std::uint32_t swapped(std::uint32_t word) noexcept
{
    return word << 24 | (word & 0xFF00u) << 8 | (word >> 8 & 0xFF00u) | word >> 24;
}

/// `word` from or into `Order`.
template <std::endian Order, class Word>
constexpr Word ordered(Word word) noexcept
{
    return Order == std::endian::native ? word : swapped(word);
}

template <class Word>
Word loadWord(const signed char* from) noexcept
{
    Word word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

template <class Word>
void storeWord(signed char* to, Word word) noexcept
{
    std::memcpy(to, &word, sizeof word);
}

} // namespace orv::text::charset::internal
