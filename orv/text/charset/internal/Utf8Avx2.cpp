#include "orv/text/charset/internal/Utf8Kernels.h"

#include <array>
#include <bit>
#include <cstdint>
#include <immintrin.h>

// The kernels for processors with AVX2, which is asked for at run time.
//
// Decoding: 32 bytes at a time. For every byte the unit is computed that a character beginning
// there would give, from that byte and the two behind it; in a sequence of four the place of the
// second byte is used for the trailing surrogate. Then the units at the places that begin none are
// squeezed out, eight at a time, by a shuffle that the mask of wanted places selects.
//
// Encoding: eight units at a time, each spread to its bytes in a lane of 16 or 32 bits; the unused
// bytes of the lanes are squeezed out the same way.

namespace orv::text::charset::internal {

namespace {

using Shuffle = std::array<signed char, 16>;
using Shuffles = std::array<Shuffle, 256>;

constexpr signed char NOTHING = -1; // a shuffle index that gives zero

/// Gathers the 16-bit lanes whose bits are set.
constexpr Shuffles lanesKept()
{
    Shuffles all{};
    for (std::size_t mask = 0; mask < all.size(); ++mask) {
        all[mask].fill(NOTHING);
        std::size_t at = 0;
        for (std::size_t lane = 0; lane < 8; ++lane) {
            if ((mask >> lane & 1) == 0) continue;
            all[mask][at++] = static_cast<signed char>(2 * lane);
            all[mask][at++] = static_cast<signed char>(2 * lane + 1);
        }
    }
    return all;
}

/// Gathers the bytes of eight lanes of 16 bits: the low one, and the high one where the bit of the
/// lane is clear.
constexpr Shuffles pairsPacked()
{
    Shuffles all{};
    for (std::size_t mask = 0; mask < all.size(); ++mask) {
        all[mask].fill(NOTHING);
        std::size_t at = 0;
        for (std::size_t lane = 0; lane < 8; ++lane) {
            all[mask][at++] = static_cast<signed char>(2 * lane);
            if ((mask >> lane & 1) == 0) all[mask][at++] = static_cast<signed char>(2 * lane + 1);
        }
    }
    return all;
}

/// Gathers the bytes of four lanes of 32 bits: one, a second one where bit 0 to 3 of the lane is
/// set, a third one where bit 4 to 7 is.
constexpr Shuffles triplesPacked()
{
    Shuffles all{};
    for (std::size_t mask = 0; mask < all.size(); ++mask) {
        all[mask].fill(NOTHING);
        std::size_t at = 0;
        for (std::size_t lane = 0; lane < 4; ++lane) {
            const std::size_t count = 1 + (mask >> lane & 1) + (mask >> (lane + 4) & 1);
            for (std::size_t i = 0; i < count; ++i) {
                all[mask][at++] = static_cast<signed char>(4 * lane + i);
            }
        }
    }
    return all;
}

alignas(16) constexpr Shuffles keepLanes = lanesKept();
alignas(16) constexpr Shuffles packPairs = pairsPacked();
alignas(16) constexpr Shuffles packTriples = triplesPacked();

[[gnu::target("avx2,popcnt")]] inline __m128i shuffleOf(const Shuffles& all, std::uint32_t mask)
{
    return _mm_load_si128(reinterpret_cast<const __m128i*>(all[mask].data()));
}

[[gnu::target("avx2,popcnt")]] inline __m256i load(const void* from)
{
    return _mm256_loadu_si256(static_cast<const __m256i*>(from));
}

[[gnu::target("avx2,popcnt")]] inline __m128i loadHalf(const void* from)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

[[gnu::target("avx2,popcnt")]] inline void store(void* to, __m256i value)
{
    _mm256_storeu_si256(static_cast<__m256i*>(to), value);
}

[[gnu::target("avx2,popcnt")]] inline void storeHalf(void* to, __m128i value)
{
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

[[gnu::target("avx2,popcnt")]] inline std::uint32_t bitsOf(__m256i bytes)
{
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
}

[[gnu::target("avx2,popcnt")]] inline __m256i every(int byte)
{
    return _mm256_set1_epi8(static_cast<char>(byte));
}

[[gnu::target("avx2,popcnt")]] inline __m256i everyPair(int unit)
{
    return _mm256_set1_epi16(static_cast<short>(unit));
}

[[gnu::target("avx2,popcnt")]] inline __m256i everyLane(int value)
{
    return _mm256_set1_epi32(value);
}

// Decoding

constexpr std::ptrdiff_t BLOCK = 32;
constexpr std::ptrdiff_t HALF = BLOCK / 2;
constexpr std::ptrdiff_t BEHIND = 2; // bytes read behind a block

/// What a block of bytes holds, a bit for each byte.
struct Block {
    std::uint32_t taken;  ///< the bytes of whole characters, from the start on
    std::uint32_t tails;  ///< continuation bytes
    std::uint32_t leads3; ///< first bytes of sequences of three or four
    std::uint32_t leads4; ///< first bytes of sequences of four
    bool inOrder;
};

/// Sorts the 32 bytes at `in`, of which some are not ASCII.
[[gnu::target("avx2,popcnt")]] inline Block sorted(const signed char* in, __m256i bytes,
                                                   std::uint32_t high)
{
    Block block;
    block.tails = bitsOf(_mm256_cmpgt_epi8(every(0xC0), bytes));
    const std::uint32_t leads = high & ~block.tails;
    block.leads3 = high & bitsOf(_mm256_cmpgt_epi8(bytes, every(0xDF)));
    block.leads4 = high & bitsOf(_mm256_cmpgt_epi8(bytes, every(0xEF)));

    // A sequence that the end of the block cuts waits for the next one.
    const bool cut = ((leads >> 31) | (block.leads3 >> 30) | (block.leads4 >> 29)) != 0;
    block.taken = cut ? std::bit_floor(leads) - 1 : ~std::uint32_t{0};
    block.leads3 &= block.taken;
    block.leads4 &= block.taken;

    const std::uint64_t wanted = std::uint64_t{leads & block.taken} << 1 |
                                 std::uint64_t{block.leads3} << 2 |
                                 std::uint64_t{block.leads4} << 3;
    // C0, C1 and F5 to FF begin no sequence.
    const __m256i noLeads = _mm256_or_si256(_mm256_cmpgt_epi8(every(0xC2), bytes),
                                            _mm256_cmpgt_epi8(bytes, every(0xF4)));
    block.inOrder =
        wanted == (block.tails & block.taken) && (bitsOf(noLeads) & leads & block.taken) == 0;
    if (block.leads3 == 0 || !block.inOrder) return block;

    // Surrogates, and of the sequences of four all but U+10000 to U+10FFFF with a second byte up to
    // AF.
    const __m256i second = load(in + 1);
    __m256i bad = _mm256_and_si256(_mm256_cmpeq_epi8(bytes, every(0xED)),
                                   _mm256_cmpgt_epi8(second, every(0x9F)));
    if (block.leads4 != 0) {
        const __m256i from90 = _mm256_cmpgt_epi8(second, every(0x8F));
        const __m256i lead4 = _mm256_cmpgt_epi8(bytes, every(0xEF));
        bad = _mm256_or_si256(bad, _mm256_and_si256(_mm256_cmpeq_epi8(bytes, every(0xF4)), from90));
        bad = _mm256_or_si256(bad,
                              _mm256_andnot_si256(from90, _mm256_cmpeq_epi8(bytes, every(0xF0))));
        bad = _mm256_or_si256(bad, _mm256_and_si256(lead4, _mm256_cmpgt_epi8(second, every(0xAF))));
    }
    // Of ASCII bytes the comparisons above say nothing.
    block.inOrder = (bitsOf(bad) & high & block.taken) == 0;
    return block;
}

/// Stores the lanes of `units` whose bits are set in `mask`; returns the place behind them.
[[gnu::target("avx2,popcnt")]] inline char16_t* squeeze(__m128i units, std::uint32_t mask,
                                                        char16_t* out)
{
    storeHalf(out, _mm_shuffle_epi8(units, shuffleOf(keepLanes, mask)));
    return out + std::popcount(mask);
}

/// The units that begin at 16 places: `first` the bytes there in lanes of their own, `third` those
/// two behind, `pairs` the bytes there and one behind as `first * 64 + second`.
template <bool three, bool four>
[[gnu::target("avx2,popcnt")]] inline __m256i unitsOf(__m256i first, __m256i pairs, __m256i second,
                                                      __m256i third)
{
    __m256i units = first;
    const __m256i two = _mm256_sub_epi16(pairs, everyPair(0x3080));
    units = _mm256_blendv_epi8(units, two, _mm256_cmpgt_epi16(first, everyPair(0x7F)));
    if constexpr (three) {
        const __m256i all = _mm256_sub_epi16(_mm256_add_epi16(_mm256_slli_epi16(pairs, 6), third),
                                             everyPair(0x2080));
        units = _mm256_blendv_epi8(units, all, _mm256_cmpgt_epi16(first, everyPair(0xDF)));
        if constexpr (four) {
            // Of a sequence of four `all` holds the code point without its last six bits.
            const __m256i leading = _mm256_add_epi16(_mm256_srli_epi16(all, 4), everyPair(0xD7C0));
            units = _mm256_blendv_epi8(units, leading, _mm256_cmpgt_epi16(first, everyPair(0xEF)));
            const __m256i trailing = _mm256_or_si256(
                _mm256_or_si256(everyPair(0xDC00),
                                _mm256_slli_epi16(_mm256_and_si256(second, everyPair(0x0F)), 6)),
                _mm256_and_si256(third, everyPair(0x3F)));
            const __m256i tail = _mm256_and_si256(_mm256_cmpgt_epi16(first, everyPair(0x7F)),
                                                  _mm256_cmpgt_epi16(everyPair(0xC0), first));
            units = _mm256_blendv_epi8(units, trailing, tail);
        }
    }
    return units;
}

/// Decodes the taken bytes of a block.
template <bool three, bool four>
[[gnu::target("avx2,popcnt")]] inline char16_t* decodeBlock(const signed char* in, __m256i bytes,
                                                            const Block& block, char16_t* out)
{
    const __m256i zero = _mm256_setzero_si256();
    const __m256i next = load(in + 1);
    const __m256i last = three ? load(in + 2) : zero;
    const __m256i weights = everyPair(0x4001); // the second byte once, the first 64 times

    const __m256i low =
        unitsOf<three, four>(_mm256_unpacklo_epi8(bytes, zero),
                             _mm256_maddubs_epi16(_mm256_unpacklo_epi8(next, bytes), weights),
                             _mm256_unpacklo_epi8(next, zero), _mm256_unpacklo_epi8(last, zero));
    const __m256i high =
        unitsOf<three, four>(_mm256_unpackhi_epi8(bytes, zero),
                             _mm256_maddubs_epi16(_mm256_unpackhi_epi8(next, bytes), weights),
                             _mm256_unpackhi_epi8(next, zero), _mm256_unpackhi_epi8(last, zero));

    // The trailing surrogate stands where the second byte of its sequence does.
    const std::uint32_t kept = (~block.tails | block.leads4 << 1) & block.taken;
    out = squeeze(_mm256_castsi256_si128(low), kept & 0xFF, out);
    out = squeeze(_mm256_castsi256_si128(high), kept >> 8 & 0xFF, out);
    out = squeeze(_mm256_extracti128_si256(low, 1), kept >> 16 & 0xFF, out);
    return squeeze(_mm256_extracti128_si256(high, 1), kept >> 24, out);
}

[[gnu::target("avx2,popcnt")]] inline void widen(char16_t* out, __m256i bytes)
{
    store(out, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
    store(out + 16, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
}

/// Decodes eight sequences of three bytes each, whose marks are in order. False where there is a
/// surrogate among them.
[[gnu::target("avx2,popcnt")]] inline bool decodeThrees(const signed char* in, char16_t* out)
{
    const __m256i bytes =
        _mm256_inserti128_si256(_mm256_castsi128_si256(loadHalf(in)), loadHalf(in + 12), 1);
    const __m256i order =
        _mm256_setr_epi8(2, 1, 0, NOTHING, 5, 4, 3, NOTHING, 8, 7, 6, NOTHING, 11, 10, 9, NOTHING,
                         2, 1, 0, NOTHING, 5, 4, 3, NOTHING, 8, 7, 6, NOTHING, 11, 10, 9, NOTHING);
    const __m256i bits = _mm256_and_si256(_mm256_shuffle_epi8(bytes, order), everyLane(0x0F3F3F));
    // The last byte once and the second 64 times, then the first 4096 times.
    const __m256i codes =
        _mm256_madd_epi16(_mm256_maddubs_epi16(bits, everyLane(0x00014001)), everyLane(0x10000001));
    const __m256i surrogates =
        _mm256_cmpeq_epi32(_mm256_and_si256(codes, everyLane(0xF800)), everyLane(0xD800));
    if (!_mm256_testz_si256(surrogates, surrogates)) return false;
    storeHalf(out,
              _mm_packus_epi32(_mm256_castsi256_si128(codes), _mm256_extracti128_si256(codes, 1)));
    return true;
}

/// Whether the first 24 bytes are eight sequences of three, by their marks.
[[gnu::target("avx2,popcnt")]] inline bool areThrees(__m256i bytes)
{
    constexpr std::uint32_t PART = 0xFFFFFF, TAILS = 0xDB6DB6;
    const std::uint32_t tails = bitsOf(_mm256_cmpgt_epi8(every(0xC0), bytes));
    if ((tails & PART) != TAILS) return false;
    const __m256i leads = _mm256_cmpeq_epi8(_mm256_and_si256(bytes, every(0xF0)), every(0xE0));
    return (bitsOf(leads) & PART) == (~TAILS & PART);
}

/// Decodes blocks up to one that is out of order, and short runs of ASCII at the end.
[[gnu::target("avx2,popcnt")]] DecoderStop
decodeBlocks(const signed char* in, const signed char* inEnd, char16_t* out, char16_t* outEnd)
{
    while (inEnd - in >= BLOCK + BEHIND && outEnd - out >= BLOCK) {
        const __m256i bytes = load(in);
        const std::uint32_t high = bitsOf(bytes);
        if (high == 0) {
            widen(out, bytes);
            in += BLOCK;
            out += BLOCK;
            continue;
        }
        if (areThrees(bytes)) {
            if (!decodeThrees(in, out)) return {in, out};
            in += 24;
            out += 8;
            continue;
        }
        const Block block = sorted(in, bytes, high);
        if (!block.inOrder) return {in, out};
        if (block.leads3 == 0) {
            out = decodeBlock<false, false>(in, bytes, block, out);
        } else if (block.leads4 == 0) {
            out = decodeBlock<true, false>(in, bytes, block, out);
        } else {
            out = decodeBlock<true, true>(in, bytes, block, out);
        }
        in += std::popcount(block.taken);
    }
    for (; inEnd - in >= HALF && outEnd - out >= HALF; in += HALF, out += HALF) {
        const __m128i bytes = loadHalf(in);
        if (_mm_movemask_epi8(bytes) != 0) break;
        store(out, _mm256_cvtepu8_epi16(bytes));
    }
    return {in, out};
}

[[gnu::target("avx2,popcnt")]] DecoderStop
decodeAvx2(const signed char* in, const signed char* inEnd, char16_t* out, char16_t* outEnd)
{
    for (;;) {
        DecoderStop stop = decodeBlocks(in, inEnd, out, outEnd);
        if (stop.in == inEnd) return stop;
        in = stop.in;
        stop = decodeUtf8Portably(in, inEnd, stop.out, outEnd, BLOCK);
        if (stop.in - in < BLOCK || stop.in == inEnd) return stop;
        in = stop.in;
        out = stop.out;
    }
}

// Encoding

constexpr std::ptrdiff_t UNITS = 16;
constexpr std::ptrdiff_t ROOM = 2 * UNITS; // bytes that a step may touch

/// Encodes 16 units below U+0800.
[[gnu::target("avx2,popcnt")]] inline signed char* encodePairs(__m256i units, signed char* out)
{
    const __m256i two = _mm256_or_si256(
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(units, everyPair(0x3F)), 8),
                        _mm256_srli_epi16(units, 6)),
        everyPair(0x80C0));
    const __m256i ascii = _mm256_cmpgt_epi16(everyPair(0x80), units);
    const __m256i pairs = _mm256_blendv_epi8(two, units, ascii);
    // The lanes of 128 bits stay apart when packed: bits 0 to 7 and 16 to 23 are of use.
    const std::uint32_t mask = bitsOf(_mm256_packs_epi16(ascii, ascii));
    const std::uint32_t low = mask & 0xFF;
    const std::uint32_t high = mask >> 16 & 0xFF;
    storeHalf(out, _mm_shuffle_epi8(_mm256_castsi256_si128(pairs), shuffleOf(packPairs, low)));
    out += 16 - std::popcount(low);
    storeHalf(out,
              _mm_shuffle_epi8(_mm256_extracti128_si256(pairs, 1), shuffleOf(packPairs, high)));
    return out + 16 - std::popcount(high);
}

/// Squeezes eight lanes of 32 bits; `two` and `three` have the bits of the lanes with a second and
/// a third byte.
[[gnu::target("avx2,popcnt")]] inline signed char*
squeezeLanes(__m256i lanes, std::uint32_t two, std::uint32_t three, signed char* out)
{
    const std::uint32_t low = (two & 0xF) | (three & 0xF) << 4;
    const std::uint32_t high = two >> 4 | (three & 0xF0);
    storeHalf(out, _mm_shuffle_epi8(_mm256_castsi256_si128(lanes), shuffleOf(packTriples, low)));
    out += 4 + std::popcount(low);
    storeHalf(out,
              _mm_shuffle_epi8(_mm256_extracti128_si256(lanes, 1), shuffleOf(packTriples, high)));
    return out + 4 + std::popcount(high);
}

[[gnu::target("avx2,popcnt")]] inline std::uint32_t laneBits(__m256i lanes)
{
    return static_cast<std::uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(lanes)));
}

/// Spreads units to the bytes of their sequences, a lane of 32 bits for each.
struct Spread {
    __m256i lanes;
    std::uint32_t two;   ///< lanes with a second byte
    std::uint32_t three; ///< lanes with a third byte
};

[[gnu::target("avx2,popcnt")]] inline Spread spread(__m256i units)
{
    const __m256i three = _mm256_or_si256(
        _mm256_or_si256(_mm256_srli_epi32(units, 12),
                        _mm256_slli_epi32(_mm256_and_si256(units, everyLane(0xFC0)), 2)),
        _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(units, everyLane(0x3F)), 16),
                        everyLane(0x8080E0)));
    // Without its first byte that is the form of two, but for the mark.
    const __m256i two = _mm256_or_si256(_mm256_srli_epi32(three, 8), everyLane(0x40));
    const __m256i from80 = _mm256_cmpgt_epi32(units, everyLane(0x7F));
    const __m256i from800 = _mm256_cmpgt_epi32(units, everyLane(0x7FF));
    const __m256i lanes =
        _mm256_blendv_epi8(_mm256_blendv_epi8(units, two, from80), three, from800);
    return {lanes, laneBits(from80), laneBits(from800)};
}

/// Gives surrogates two bytes each: a leading one the first two of the pair, a trailing one the
/// last two.
[[gnu::target("avx2,popcnt")]] inline void spreadPairs(__m256i units, __m256i surrogates,
                                                       Spread& out)
{
    const __m256i before =
        _mm256_permutevar8x32_epi32(units, _mm256_setr_epi32(0, 0, 1, 2, 3, 4, 5, 6));
    // The code point without its last ten bits.
    const __m256i top =
        _mm256_add_epi32(_mm256_and_si256(units, everyLane(0x3FF)), everyLane(0x40));
    const __m256i leading = _mm256_or_si256(
        _mm256_or_si256(_mm256_srli_epi32(top, 8),
                        _mm256_slli_epi32(_mm256_and_si256(top, everyLane(0xFC)), 6)),
        everyLane(0x80F0));
    const __m256i trailing = _mm256_or_si256(
        _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(before, everyLane(3)), 4),
                        _mm256_and_si256(_mm256_srli_epi32(units, 6), everyLane(0xF))),
        _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(units, everyLane(0x3F)), 8),
                        everyLane(0x8080)));
    const __m256i isTrailing = _mm256_cmpgt_epi32(units, everyLane(0xDBFF));
    const __m256i pair = _mm256_blendv_epi8(leading, trailing, isTrailing);
    out.lanes = _mm256_blendv_epi8(out.lanes, pair, surrogates);
    out.three &= ~laneBits(surrogates);
}

/// Encodes eight units, or seven where a pair begins with the eighth. Moves nothing where they are
/// out of order.
[[gnu::target("avx2,popcnt")]] inline bool encodeEight(const char16_t*& in, signed char*& out)
{
    const __m256i units = _mm256_cvtepu16_epi32(loadHalf(in));
    Spread lanes = spread(units);
    const __m256i surrogates =
        _mm256_cmpeq_epi32(_mm256_and_si256(units, everyLane(0xF800)), everyLane(0xD800));
    const std::uint32_t all = laneBits(surrogates);
    if (all == 0) {
        out = squeezeLanes(lanes.lanes, lanes.two, lanes.three, out);
        in += 8;
        return true;
    }
    const std::uint32_t leading =
        laneBits(_mm256_cmpeq_epi32(_mm256_and_si256(units, everyLane(0xFC00)), everyLane(0xD800)));
    if ((all ^ leading) != (leading << 1 & 0xFF)) return false;
    spreadPairs(units, surrogates, lanes);
    out = squeezeLanes(lanes.lanes, lanes.two, lanes.three, out);
    in += 8;
    if (leading >> 7 != 0) {
        --in;
        out -= 2;
    }
    return true;
}

/// Encodes eight surrogate pairs, each a lane of 32 bits with the leading one below.
[[gnu::target("avx2,popcnt")]] inline __m256i encodeAllPairs(__m256i pairs)
{
    // The code point without its last ten bits.
    const __m256i top =
        _mm256_add_epi32(_mm256_and_si256(pairs, everyLane(0x3FF)), everyLane(0x40));
    const __m256i first = _mm256_srli_epi32(top, 8);
    const __m256i second = _mm256_slli_epi32(_mm256_and_si256(top, everyLane(0xFC)), 6);
    const __m256i third =
        _mm256_or_si256(_mm256_slli_epi32(_mm256_and_si256(top, everyLane(3)), 20),
                        _mm256_and_si256(_mm256_srli_epi32(pairs, 6), everyLane(0xF0000)));
    const __m256i fourth = _mm256_slli_epi32(_mm256_and_si256(pairs, everyLane(0x3F0000)), 8);
    const __m256i marks = everyLane(static_cast<int>(0x808080F0));
    return _mm256_or_si256(_mm256_or_si256(_mm256_or_si256(first, second), marks),
                           _mm256_or_si256(third, fourth));
}

[[gnu::target("avx2,popcnt")]] inline bool areAllPairs(__m256i units)
{
    const __m256i kinds = _mm256_and_si256(units, everyLane(static_cast<int>(0xFC00FC00)));
    return bitsOf(_mm256_cmpeq_epi32(kinds, everyLane(static_cast<int>(0xDC00D800)))) == ~0u;
}

/// Encodes steps up to one that is out of order.
[[gnu::target("avx2,popcnt")]] EncoderStop encodeSteps(const char16_t* in, const char16_t* inEnd,
                                                       signed char* out, signed char* outEnd)
{
    while (inEnd - in >= UNITS && outEnd - out >= ROOM) {
        const __m256i units = load(in);
        if (_mm256_testz_si256(units, everyPair(0xFF80))) {
            storeHalf(out, _mm_packus_epi16(_mm256_castsi256_si128(units),
                                            _mm256_extracti128_si256(units, 1)));
            in += UNITS;
            out += UNITS;
        } else if (_mm256_testz_si256(units, everyPair(0xF800))) {
            out = encodePairs(units, out);
            in += UNITS;
        } else if (areAllPairs(units)) {
            store(out, encodeAllPairs(units));
            in += UNITS;
            out += ROOM;
        } else if (!encodeEight(in, out)) {
            return {in, out};
        }
    }
    return {in, out};
}

[[gnu::target("avx2,popcnt")]] EncoderStop encodeAvx2(const char16_t* in, const char16_t* inEnd,
                                                      signed char* out, signed char* outEnd)
{
    for (;;) {
        EncoderStop stop = encodeSteps(in, inEnd, out, outEnd);
        if (stop.in == inEnd) return stop;
        in = stop.in;
        stop = encodeUtf8Portably(in, inEnd, stop.out, outEnd, UNITS);
        if (stop.in - in < UNITS || stop.in == inEnd) return stop;
        in = stop.in;
        out = stop.out;
    }
}

bool hasAvx2()
{
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
}

// Short text, with what every processor of this kind has

/// Below this many elements the kernels above cost more to set up than they gain.
constexpr std::ptrdiff_t SHORT = 56;

DecoderStop takeAscii(const signed char* in, const signed char* inEnd, char16_t* out,
                      char16_t* outEnd)
{
    const __m128i zero = _mm_setzero_si128();
    for (; inEnd - in >= 16 && outEnd - out >= 16; in += 16, out += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        if (_mm_movemask_epi8(bytes) != 0) return {in, out};
        auto* const to = reinterpret_cast<__m128i*>(out);
        _mm_storeu_si128(to, _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(bytes, zero));
    }
    if (inEnd - in >= 8 && outEnd - out >= 8) {
        const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
        if (_mm_movemask_epi8(bytes) != 0) return {in, out};
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_unpacklo_epi8(bytes, zero));
        in += 8;
        out += 8;
    }
    while (in < inEnd && out < outEnd && *in >= 0) *out++ = static_cast<char16_t>(*in++);
    return {in, out};
}

bool isAscii(__m128i units)
{
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    return _mm_movemask_epi8(_mm_cmpeq_epi8(high, _mm_setzero_si128())) == 0xFFFF;
}

EncoderStop takeAscii(const char16_t* in, const char16_t* inEnd, signed char* out,
                      signed char* outEnd)
{
    for (; inEnd - in >= 16 && outEnd - out >= 16; in += 16, out += 16) {
        const auto* const from = reinterpret_cast<const __m128i*>(in);
        const __m128i low = _mm_loadu_si128(from);
        const __m128i high = _mm_loadu_si128(from + 1);
        if (!isAscii(_mm_or_si128(low, high))) return {in, out};
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(low, high));
    }
    if (inEnd - in >= 8 && outEnd - out >= 8) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        if (!isAscii(units)) return {in, out};
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
        in += 8;
        out += 8;
    }
    while (in < inEnd && out < outEnd && *in < 0x80) *out++ = static_cast<signed char>(*in++);
    return {in, out};
}

} // namespace

DecoderStop decodeUtf8(const signed char* in, const signed char* inEnd, char16_t* out,
                       char16_t* outEnd)
{
    if (inEnd - in >= SHORT && hasAvx2()) return decodeAvx2(in, inEnd, out, outEnd);
    const DecoderStop stop = takeAscii(in, inEnd, out, outEnd);
    return stop.in == inEnd ? stop : decodeUtf8Portably(stop.in, inEnd, stop.out, outEnd);
}

EncoderStop encodeUtf8(const char16_t* in, const char16_t* inEnd, signed char* out,
                       signed char* outEnd)
{
    if (inEnd - in >= SHORT && hasAvx2()) return encodeAvx2(in, inEnd, out, outEnd);
    const EncoderStop stop = takeAscii(in, inEnd, out, outEnd);
    return stop.in == inEnd ? stop : encodeUtf8Portably(stop.in, inEnd, stop.out, outEnd);
}

} // namespace orv::text::charset::internal
