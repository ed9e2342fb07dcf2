#pragma once

#include "orv/text/charset/internal/ByteOrder.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orv::text::charset::internal {

/// Copies `count` 16-bit words, each with its bytes exchanged, the fastest way on this processor.
void copySwapped(void* to, const void* from, std::ptrdiff_t count);

/// The same on any processor.
inline void copySwappedPortably(void* to, const void* from, std::ptrdiff_t count)
{
    constexpr std::ptrdiff_t BLOCK = 32;
    auto* out = static_cast<unsigned char*>(to);
    const auto* in = static_cast<const unsigned char*>(from);
    for (; count >= BLOCK; count -= BLOCK, in += 2 * BLOCK, out += 2 * BLOCK) {
        std::uint16_t block[BLOCK];
        std::memcpy(block, in, sizeof block);
        for (std::uint16_t& word : block) word = swapped(word);
        std::memcpy(out, block, sizeof block);
    }
    for (; count > 0; --count, in += 2, out += 2) {
        std::uint16_t word;
        std::memcpy(&word, in, sizeof word);
        word = swapped(word);
        std::memcpy(out, &word, sizeof word);
    }
}

} // namespace orv::text::charset::internal
