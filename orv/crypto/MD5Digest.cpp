#include "orv/crypto/MD5Digest.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/crypto/internal/Wipe.h"
#include "orv/crypto/internal/Words.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace orv::crypto {

namespace {

constexpr std::int32_t BLOCK_SIZE = 64;
constexpr std::int32_t DIGEST_SIZE = 16;
constexpr std::int32_t COUNT_AT = 56; ///< where the bit count stands in the last block

constexpr std::uint32_t initialState[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

/// 2^32 times the absolute sine of 1 to 64.
constexpr std::uint32_t sines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};

constexpr int shifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

constexpr int wordOf(int step) noexcept
{
    constexpr int factors[4] = {1, 5, 3, 7};
    constexpr int offsets[4] = {0, 1, 5, 0};
    return (factors[step / 16] * step + offsets[step / 16]) % 16;
}

constexpr std::endian LITTLE = std::endian::little;

/// `b` is what the step before has just made, and all others were there before: what does not need
/// it is put together first.
template <int number>
inline __attribute__((always_inline)) void step(std::uint32_t& a, std::uint32_t b, std::uint32_t c,
                                                std::uint32_t d, const std::uint32_t* words)
{
    constexpr int round = number / 16;
    std::uint32_t sum = a + sines[number] + words[wordOf(number)];
    if constexpr (round == 0) {
        sum += d ^ (b & (c ^ d));
    } else if constexpr (round == 1) {
        // The two halves have no bit in common, so their sum is their union.
        sum += c & ~d;
        sum += b & d;
    } else if constexpr (round == 2) {
        sum += b ^ (c ^ d);
    } else {
        sum += c ^ (b | ~d);
    }
    a = b + std::rotl(sum, shifts[round][number % 4]);
}

template <std::size_t... fours>
inline __attribute__((always_inline)) void
allSteps(std::uint32_t (&s)[4], const std::uint32_t* words, std::index_sequence<fours...>)
{
    ((step<4 * fours>(s[0], s[1], s[2], s[3], words),
      step<4 * fours + 1>(s[3], s[0], s[1], s[2], words),
      step<4 * fours + 2>(s[2], s[3], s[0], s[1], words),
      step<4 * fours + 3>(s[1], s[2], s[3], s[0], words)),
     ...);
}

/// The compression function over `count` blocks, one after the other.
void compress(std::uint32_t (&state)[4], const signed char* blocks, std::int32_t count) noexcept
{
    std::uint32_t s[4] = {state[0], state[1], state[2], state[3]};
    for (; count > 0; --count, blocks += BLOCK_SIZE) {
        std::uint32_t words[16];
        for (int i = 0; i < 16; ++i) words[i] = internal::loadWord<LITTLE>(blocks + 4 * i);
        const std::uint32_t before[4] = {s[0], s[1], s[2], s[3]};
        allSteps(s, words, std::make_index_sequence<16>());
        for (int i = 0; i < 4; ++i) s[i] += before[i];
    }
    std::copy(std::begin(s), std::end(s), std::begin(state));
}

} // namespace

MD5Digest::MD5Digest()
{
    start();
}

MD5Digest::~MD5Digest() noexcept(false)
{
    start();
    internal::keepWritten(&m_bits);
}

void MD5Digest::start() noexcept
{
    m_bits = 0;
    std::copy(std::begin(initialState), std::end(initialState), std::begin(m_state));
    std::memset(m_block, 0, sizeof m_block);
    std::memset(m_scratch, 0, sizeof m_scratch);
}

void MD5Digest::reset()
{
    start();
}

/// Bytes in the block.
std::int32_t MD5Digest::pending() const noexcept
{
    return static_cast<std::int32_t>(m_bits / 8 % BLOCK_SIZE);
}

void MD5Digest::transform(const signed char* const block) noexcept
{
    compress(m_state, block, 1);
}

void MD5Digest::update(const signed char* data, std::int32_t length)
{
    if (length < 1) return;
    const std::int32_t index = pending();
    m_bits += std::uint64_t{8} * static_cast<std::uint32_t>(length);
    if (index != 0) {
        const std::int32_t taken = std::min(length, BLOCK_SIZE - index);
        std::memcpy(m_block + index, data, static_cast<std::size_t>(taken));
        if (index + taken < BLOCK_SIZE) return;
        transform(m_block);
        data += taken;
        length -= taken;
    }
    compress(m_state, data, length / BLOCK_SIZE);
    const std::int32_t rest = length % BLOCK_SIZE;
    if (rest != 0) std::memcpy(m_block, data + (length - rest), static_cast<std::size_t>(rest));
}

void MD5Digest::getDigest(signed char* digest, std::int32_t length)
{
    if (length < getLength()) throwResult(E_BUFFER_TOO_SMALL);
    pad();
    for (int i = 0; i < 4; ++i) internal::storeWord<LITTLE>(digest + 4 * i, m_state[i]);
    reset();
}

/// One bit, zeros up to the last 8 bytes of a block, and the bit count.
void MD5Digest::pad() noexcept
{
    std::int32_t index = pending();
    m_block[index++] = static_cast<signed char>(0x80);
    if (index > COUNT_AT) {
        std::memset(m_block + index, 0, static_cast<std::size_t>(BLOCK_SIZE - index));
        transform(m_block);
        index = 0;
    }
    std::memset(m_block + index, 0, static_cast<std::size_t>(COUNT_AT - index));
    internal::storeWord<LITTLE>(m_block + COUNT_AT, static_cast<std::uint32_t>(m_bits));
    internal::storeWord<LITTLE>(m_block + COUNT_AT + 4, static_cast<std::uint32_t>(m_bits >> 32));
    transform(m_block);
}

std::int32_t MD5Digest::getLength() const
{
    return DIGEST_SIZE;
}

String MD5Digest::getName()
{
    return u"MD5";
}

} // namespace orv::crypto
