#pragma once

#include <cstdint>

namespace orv::text::charset::internal {

constexpr bool isSurrogate(std::uint32_t c) noexcept
{
    return (c & 0xFFFFF800u) == 0xD800;
}

constexpr bool isLeading(std::uint32_t c) noexcept
{
    return (c & 0xFFFFFC00u) == 0xD800;
}

constexpr bool isTrailing(std::uint32_t c) noexcept
{
    return (c & 0xFFFFFC00u) == 0xDC00;
}

constexpr std::uint32_t combined(char16_t leading, char16_t trailing) noexcept
{
    return 0x10000u + ((leading & 0x3FFu) << 10) + (trailing & 0x3FFu);
}

constexpr char16_t leadingOf(std::uint32_t c) noexcept
{
    return static_cast<char16_t>(0xD7C0u + (c >> 10));
}

constexpr char16_t trailingOf(std::uint32_t c) noexcept
{
    return static_cast<char16_t>(0xDC00u + (c & 0x3FFu));
}

/// Throw InvalidCharacterException in the words that the encoders share.
[[noreturn]] void throwLoneLeading();
[[noreturn]] void throwLoneTrailing();
/// Throws InvalidCharacterException in the decoder's own words.
[[noreturn]] void throwInvalid(const char16_t* words);
[[noreturn]] void throwUnmappable();

} // namespace orv::text::charset::internal
