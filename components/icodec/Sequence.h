#pragma once

#include <array>
#include <cstdint>

namespace orv::components::icodec {

/// What a byte decides about the sequence it is part of.
struct Step {
    char16_t unit = NONE;      ///< the character; or the number of the next byte's table
    std::uint8_t consumed = 0; ///< bytes of the sequence; 0: the next byte decides

    static constexpr char16_t NONE = u'\uFFFD'; ///< of a sequence without a character
};

/// The bytes of a character.
struct Sequence {
    std::array<signed char, 3> bytes{};
    std::uint8_t length = 0; ///< 0 for a character that the encoding lacks
};

} // namespace orv::components::icodec
