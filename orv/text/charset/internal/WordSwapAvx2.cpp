#include "orv/text/charset/internal/WordSwap.h"

#include <immintrin.h>

// For processors with AVX2, which is asked for at run time: 64 words at a time by a shuffle.

namespace orv::text::charset::internal {

namespace {

constexpr std::ptrdiff_t BLOCK = 64;
constexpr std::ptrdiff_t VECTORS = 4;

/// Copies whole blocks, and gives the number of words in them.
[[gnu::target("avx2")]] std::ptrdiff_t copyBlocks(void* to, const void* from, std::ptrdiff_t count)
{
    const __m256i exchange = _mm256_setr_epi8(1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14,
                                              1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14);
    auto* out = static_cast<__m256i*>(to);
    const auto* in = static_cast<const __m256i*>(from);
    std::ptrdiff_t done = 0;
    for (; count - done >= BLOCK; done += BLOCK, in += VECTORS, out += VECTORS) {
        for (std::ptrdiff_t i = 0; i < VECTORS; ++i) {
            const __m256i words = _mm256_loadu_si256(in + i);
            _mm256_storeu_si256(out + i, _mm256_shuffle_epi8(words, exchange));
        }
    }
    return done;
}

} // namespace

void copySwapped(void* to, const void* from, std::ptrdiff_t count)
{
    std::ptrdiff_t done = 0;
    if (count >= BLOCK && __builtin_cpu_supports("avx2")) done = copyBlocks(to, from, count);
    copySwappedPortably(static_cast<char*>(to) + 2 * done,
                        static_cast<const char*>(from) + 2 * done, count - done);
}

} // namespace orv::text::charset::internal
