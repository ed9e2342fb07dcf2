#include "platform/orvcore.h"

#include <cstdlib>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

constexpr bool underSanitizer =
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

const char16_t* endOf(const char16_t* text) noexcept
{
    while (*text != 0) ++text;
    return text;
}

#if defined(__SSE2__)

constexpr std::uintptr_t vectorSize = sizeof(__m128i);

// Bits 2n and 2n + 1 are set where unit n of the aligned vector at `place` is 0.
unsigned zeroUnits(const char16_t* place) noexcept
{
    const __m128i units = _mm_load_si128(reinterpret_cast<const __m128i*>(place));
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(units, _mm_setzero_si128())));
}

// Reads whole aligned vectors. They never reach over a page, so what is read around the text is
// readable memory whoever it belongs to; the sanitizers would object and get the plain loop.
std::size_t alignedLengthOf(const char16_t* text) noexcept
{
    const auto address = reinterpret_cast<std::uintptr_t>(text);
    if (address % sizeof(char16_t) != 0) return static_cast<std::size_t>(endOf(text) - text);

    const unsigned before = address % vectorSize;
    const char16_t* place = text - before / sizeof(char16_t);
    if (const unsigned zeroes = zeroUnits(place) >> before; zeroes != 0) {
        return static_cast<std::size_t>(__builtin_ctz(zeroes)) / sizeof(char16_t);
    }
    for (;;) {
        place += vectorSize / sizeof(char16_t);
        if (const unsigned zeroes = zeroUnits(place); zeroes != 0) {
            place += static_cast<unsigned>(__builtin_ctz(zeroes)) / sizeof(char16_t);
            return static_cast<std::size_t>(place - text);
        }
    }
}

#else

std::size_t alignedLengthOf(const char16_t* text) noexcept
{
    return static_cast<std::size_t>(endOf(text) - text);
}

#endif

std::size_t lengthOf(const char16_t* text) noexcept
{
    if constexpr (underSanitizer) return static_cast<std::size_t>(endOf(text) - text);
    return alignedLengthOf(text);
}

bool contains(const char16_t* set, char16_t unit) noexcept
{
    for (; *set != 0; ++set) {
        if (*set == unit) return true;
    }
    return false;
}

} // namespace

std::int32_t ORVStrLenW(const char16_t* text) noexcept
{
    return static_cast<std::int32_t>(lengthOf(text));
}

std::int32_t ORVStrLenA(const char* text) noexcept
{
    return static_cast<std::int32_t>(std::strlen(text));
}

std::int32_t ORVStrLenW_32(const char16_t* text) noexcept
{
    return ORVStrLenW(text);
}

std::int32_t ORVStrLenA_32(const char* text) noexcept
{
    return ORVStrLenA(text);
}

std::int32_t ORVStrCmpW(const char16_t* a, const char16_t* b) noexcept
{
    while (*a == *b && *a != 0) {
        ++a;
        ++b;
    }
    return *a - *b;
}

void ORVStrCpyW(char16_t* destination, const char16_t* source) noexcept
{
    std::memcpy(destination, source, (lengthOf(source) + 1) * sizeof(char16_t));
}

void ORVStrNCpyW(char16_t* destination, const char16_t* source, std::int32_t count) noexcept
{
    for (std::int32_t i = 0; i < count; ++i) {
        destination[i] = source[i];
        if (source[i] == 0) return;
    }
}

const char16_t* ORVStrChrW(const char16_t* text, char16_t unit) noexcept
{
    for (; *text != unit; ++text) {
        if (*text == 0) return nullptr;
    }
    return text;
}

const char* ORVStrChrA(const char* text, char byte) noexcept
{
    return std::strchr(text, byte);
}

char* ORVStrDupA(const char* text) noexcept
{
    if (text == nullptr) return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    void* copy = std::malloc(size);
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

void ORVStrFreeA(char* text) noexcept
{
    std::free(text);
}

char16_t* ORVStrTokW(char16_t** position, const char16_t* delimiters) noexcept
{
    char16_t* place = *position;
    if (place == nullptr) return nullptr;

    while (*place != 0 && contains(delimiters, *place)) ++place;
    char16_t* token = place;
    while (*place != 0 && !contains(delimiters, *place)) ++place;
    *position = place;
    if (place == token) return nullptr;

    if (*place != 0) {
        *place = 0;
        *position = place + 1;
    }
    return token;
}
