#include "orv/crypto/BlowFish.h"

#include "orv/Failure.h"
#include "orv/crypto/internal/Wipe.h"
#include "orv/crypto/internal/Words.h"

#include <algorithm>
#include <cstring>

namespace orv::crypto {

namespace {

constexpr std::int32_t BLOCK = 8;
constexpr std::int32_t LONGEST_KEY = 56;

/// Blocks under way at once. One block waits for its tables most of the time.
constexpr int LANES = 4;

constexpr std::endian BIG = std::endian::big;

/// Gives the bytes of a key as words, over and over.
class KeyWords {
public:
    KeyWords(const signed char* key, std::int32_t length) : m_key(key), m_length(length) {}

    std::uint32_t next() noexcept
    {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word = word << 8 | static_cast<unsigned char>(m_key[m_position]);
            if (++m_position == m_length) m_position = 0;
        }
        return word;
    }

private:
    const signed char* m_key;
    std::int32_t m_length;
    std::int32_t m_position = 0;
};

void checkLength(std::int32_t length)
{
    if (length % BLOCK != 0) throwException(u"only supports 8 byte block boundaries");
}

} // namespace

BlowFish::BlowFish(const signed char* key, std::int32_t length)
{
    std::memcpy(m_key.p, s_pbox, sizeof m_key.p);
    std::memcpy(m_key.s, s_sbox, sizeof m_key.s);
    const std::int32_t effective = std::min(length, LONGEST_KEY);
    if (effective < 1) return;

    KeyWords words(key, effective);
    for (std::uint32_t& word : m_key.p) word ^= words.next();

    std::uint32_t left[1] = {0};
    std::uint32_t right[1] = {0};
    const auto fill = [&](std::uint32_t* table, int size) {
        for (int i = 0; i < size; i += 2) {
            crypt<true>(m_key, left, right);
            table[i] = left[0];
            table[i + 1] = right[0];
        }
    };
    fill(m_key.p, 18);
    for (auto& box : m_key.s) fill(box, 256);
}

BlowFish::~BlowFish() noexcept(false)
{
    internal::wipe(&m_key, sizeof m_key);
}

/// The network over several blocks side by side; backwards it is the same with the sub-keys in the
/// reverse order.
template <bool forward, int lanes>
inline __attribute__((always_inline)) void
BlowFish::crypt(const Schedule& key, std::uint32_t (&left)[lanes], std::uint32_t (&right)[lanes])
{
    const auto subkey = [&](int i) { return key.p[forward ? i : 17 - i]; };
    const auto mix = [&](std::uint32_t x) {
        const std::uint32_t sum = key.s[0][x >> 24] + key.s[1][x >> 16 & 0xFF];
        return (sum ^ key.s[2][x >> 8 & 0xFF]) + key.s[3][x & 0xFF];
    };
    for (std::uint32_t& word : left) word ^= subkey(0);
#pragma GCC unroll 8
    for (int i = 0; i < 16; i += 2) {
#pragma GCC unroll 4
        for (int k = 0; k < lanes; ++k) right[k] ^= mix(left[k]) ^ subkey(i + 1);
#pragma GCC unroll 4
        for (int k = 0; k < lanes; ++k) left[k] ^= mix(right[k]) ^ subkey(i + 2);
    }
    for (int k = 0; k < lanes; ++k) {
        const std::uint32_t last = right[k] ^ subkey(17);
        right[k] = left[k];
        left[k] = last;
    }
}

template <bool forward, int lanes>
inline __attribute__((always_inline)) void
BlowFish::cryptBytes(const Schedule& key, signed char* destination, const signed char* source)
{
    std::uint32_t left[lanes];
    std::uint32_t right[lanes];
    for (int k = 0; k < lanes; ++k) {
        left[k] = internal::loadWord<BIG>(source + k * BLOCK);
        right[k] = internal::loadWord<BIG>(source + k * BLOCK + 4);
    }
    crypt<forward>(key, left, right);
    for (int k = 0; k < lanes; ++k) {
        internal::storeWord<BIG>(destination + k * BLOCK, left[k]);
        internal::storeWord<BIG>(destination + k * BLOCK + 4, right[k]);
    }
}

template <bool forward>
void BlowFish::cryptAll(const Schedule& key, signed char* destination, const signed char* source,
                        std::int32_t length)
{
    constexpr std::int32_t step = LANES * BLOCK;
    // A destination that begins within the next blocks of the source overwrites them one by one.
    const bool runsAhead = destination > source && destination < source + step;
    if (!runsAhead) {
        for (; length >= step; length -= step, source += step, destination += step) {
            cryptBytes<forward, LANES>(key, destination, source);
        }
    }
    for (; length > 0; length -= BLOCK, source += BLOCK, destination += BLOCK) {
        cryptBytes<forward, 1>(key, destination, source);
    }
}

void BlowFish::encrypt(signed char* destination, const signed char* source,
                       std::int32_t length) const
{
    checkLength(length);
    cryptAll<true>(m_key, destination, source, length);
}

void BlowFish::decrypt(signed char* destination, const signed char* source,
                       std::int32_t length) const
{
    checkLength(length);
    cryptAll<false>(m_key, destination, source, length);
}

void BlowFish::encryptBlock(std::uint32_t& left, std::uint32_t& right) const
{
    std::uint32_t block[2][1] = {{left}, {right}};
    crypt<true>(m_key, block[0], block[1]);
    left = block[0][0];
    right = block[1][0];
}

void BlowFish::decryptBlock(std::uint32_t& left, std::uint32_t& right) const
{
    std::uint32_t block[2][1] = {{left}, {right}};
    crypt<false>(m_key, block[0], block[1]);
    left = block[0][0];
    right = block[1][0];
}

} // namespace orv::crypto
