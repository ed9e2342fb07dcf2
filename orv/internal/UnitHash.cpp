#include "orv/internal/UnitBlock.h"
#include "orv/internal/UnitScan.h"

#include <cstddef>

namespace orv::internal {

namespace {

consteval std::uint32_t power(int exponent)
{
    std::uint32_t result = 1;
    while (exponent-- > 0) result *= 37;
    return result;
}

template <bool Folded>
std::uint32_t valueOf(char16_t unit) noexcept
{
    return Folded ? foldedUnit(unit) : unit;
}

/// Horner's rule over the units at every `step`, going on from `hash`, four at a time: their
/// products do not wait for each other.
template <bool Folded>
std::uint32_t hashFrom(std::uint32_t hash, Units text, std::ptrdiff_t step) noexcept
{
    std::ptrdiff_t left = text.length; // units not passed yet
    const char16_t* unit = text.data;
    for (; left > 3 * step; left -= 4 * step, unit += 4 * step) {
        const std::uint32_t four =
            valueOf<Folded>(unit[0]) * power(3) + valueOf<Folded>(unit[step]) * power(2) +
            valueOf<Folded>(unit[2 * step]) * 37 + valueOf<Folded>(unit[3 * step]);
        hash = hash * power(4) + four;
    }
    for (; left > 0; left -= step, unit += step) hash = hash * 37 + valueOf<Folded>(*unit);
    return hash;
}

#if defined(__SSE2__)

__m128i foldedBlock(Block units) noexcept
{
    if (units.beyondAscii().mask() == 0) return units.lowerAscii().value;
    alignas(16) char16_t each[BLOCK_WIDTH];
    _mm_store_si128(reinterpret_cast<__m128i*>(each), units.value);
    for (char16_t& unit : each) unit = foldedUnit(unit);
    return Block::at(each).value;
}

/// The eight units at `place`, or those at its even places.
template <bool Folded, int Step>
__m128i eightAt(const char16_t* place) noexcept
{
    static_assert(Step == 1 || Step == 2);
    __m128i units = Block::at(place).value;
    if constexpr (Step == 2) {
        // Extending the sign lets the packing, which saturates signed values, keep all bits.
        const auto even = [](__m128i both) { return _mm_srai_epi32(_mm_slli_epi32(both, 16), 16); };
        units = _mm_packs_epi32(even(units), even(Block::at(place + BLOCK_WIDTH).value));
    }
    return Folded ? foldedBlock({units}) : units;
}

/// The hash of eight units in two parts, in the lanes 0 and 2: the first is to be multiplied by
/// 37^4 and added to the second.
__m128i hashOfEight(__m128i units) noexcept
{
    // The products of pairs are signed, so the units are moved into that range and back.
    const __m128i moved = _mm_xor_si128(units, _mm_set1_epi16(static_cast<short>(0x8000)));
    const __m128i pairs = _mm_madd_epi16(moved, _mm_set1_epi32(1 << 16 | 37));
    const __m128i fours = _mm_add_epi32(pairs, _mm_set1_epi32(0x8000 * (37 + 1)));
    return _mm_add_epi32(_mm_mul_epu32(fours, _mm_set1_epi32(power(2))), _mm_srli_epi64(fours, 32));
}

__m128i times(__m128i parts, std::uint32_t factor) noexcept
{
    return _mm_mul_epu32(parts, _mm_set1_epi32(static_cast<int>(factor)));
}

template <bool Folded, int Step>
std::uint32_t hashByBlocks(Units text) noexcept
{
    constexpr std::int32_t block = BLOCK_WIDTH * Step;
    const auto at = [&](std::int32_t place) {
        return hashOfEight(eightAt<Folded, Step>(text.data + place));
    };
    __m128i parts = _mm_setzero_si128();
    std::int32_t i = 0;
    // Four blocks at a time, whose products do not wait for each other.
    for (; i + 4 * block <= text.length; i += 4 * block) {
        const __m128i first = _mm_add_epi32(times(parts, power(32)), times(at(i), power(24)));
        const __m128i second =
            _mm_add_epi32(times(at(i + block), power(16)), times(at(i + 2 * block), power(8)));
        parts = _mm_add_epi32(_mm_add_epi32(first, second), at(i + 3 * block));
    }
    for (; i + block <= text.length; i += block) {
        parts = _mm_add_epi32(times(parts, power(8)), at(i));
    }
    const auto lane0 = static_cast<std::uint32_t>(_mm_cvtsi128_si32(parts));
    const auto lane2 = static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(parts, 8)));
    return hashFrom<Folded>(lane0 * power(4) + lane2, text.from(i), Step);
}

#else

template <bool Folded, int Step>
std::uint32_t hashByBlocks(Units text) noexcept
{
    return hashFrom<Folded>(0, text, Step);
}

#endif

template <bool Folded>
std::uint32_t sampledHash(Units text) noexcept
{
    const std::int32_t step = (text.length - 32) / 32 + 1;
    if (step <= 1) return hashByBlocks<Folded, 1>(text);
    if (step == 2) return hashByBlocks<Folded, 2>(text);
    return hashFrom<Folded>(0, text, step);
}

} // namespace

std::uint32_t hashOfUnits(Units text) noexcept
{
    return sampledHash<false>(text);
}

std::uint32_t hashOfFoldedUnits(Units text) noexcept
{
    return sampledHash<true>(text);
}

} // namespace orv::internal
