#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orv::internal {

/// Units in a Block.
inline constexpr std::int32_t BLOCK_WIDTH = 8;

#if defined(__SSE2__)

/// Eight units.
struct Block {
    __m128i value;

    static Block at(const char16_t* place) noexcept
    {
        return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(place))};
    }
    static Block filledWith(unsigned unit) noexcept
    {
        return {_mm_set1_epi16(static_cast<short>(unit))};
    }

    /// All bits of each unit that is the same in both.
    friend Block operator==(Block a, Block b) noexcept
    {
        return {_mm_cmpeq_epi16(a.value, b.value)};
    }
    friend Block operator&(Block a, Block b) noexcept { return {_mm_and_si128(a.value, b.value)}; }
    friend Block operator|(Block a, Block b) noexcept { return {_mm_or_si128(a.value, b.value)}; }

    /// All bits of each unit outside ASCII.
    Block beyondAscii() const noexcept
    {
        const __m128i ascii = _mm_cmpeq_epi16(_mm_srli_epi16(value, 7), _mm_setzero_si128());
        return {_mm_xor_si128(ascii, _mm_set1_epi16(-1))};
    }
    /// Capital letters of ASCII in lower case, all else as it is.
    Block lowerAscii() const noexcept
    {
        // Moved so that the capitals are the 26 least values of a signed comparison.
        const __m128i moved =
            _mm_add_epi16(value, _mm_set1_epi16(static_cast<short>(0x8000 - 'A')));
        const __m128i capital =
            _mm_cmplt_epi16(moved, _mm_set1_epi16(static_cast<short>(0x8000 + 26)));
        return {_mm_or_si128(value, _mm_and_si128(capital, _mm_set1_epi16(0x20)))};
    }

    /// Bits 2n and 2n + 1 for unit n.
    unsigned mask() const noexcept { return static_cast<unsigned>(_mm_movemask_epi8(value)); }
};

#endif

} // namespace orv::internal
