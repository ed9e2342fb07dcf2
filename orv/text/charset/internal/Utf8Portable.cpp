#include "orv/text/charset/internal/Surrogates.h"
#include "orv/text/charset/internal/Utf8Kernels.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace orv::text::charset::internal {

namespace {

constexpr std::ptrdiff_t STEP = 8; // elements of ASCII at a time

std::uint32_t byteAt(const signed char* at)
{
    return static_cast<unsigned char>(*at);
}

bool isTail(const signed char* at)
{
    return *at < -0x40;
}

bool isAscii(const signed char* eight)
{
    std::uint64_t word;
    std::memcpy(&word, eight, sizeof word);
    return (word & 0x8080808080808080u) == 0;
}

bool isAscii(const char16_t* eight)
{
    std::uint64_t words[2];
    std::memcpy(words, eight, sizeof words);
    return ((words[0] | words[1]) & 0xFF80FF80FF80FF80u) == 0;
}

/// The character at a first byte from 0x80 up, all in order; its length is 0 otherwise.
struct Sequence {
    std::ptrdiff_t length;
    std::uint32_t code;
};

Sequence sequenceAt(const signed char* at, std::ptrdiff_t left)
{
    const std::uint32_t first = byteAt(at);
    if (first < 0xE0) {
        if (first < 0xC2 || left < 2 || !isTail(at + 1)) return {0, 0};
        return {2, (first << 6) + byteAt(at + 1) - 0x3080};
    }
    if (first < 0xF0) {
        if (left < 3 || !isTail(at + 1) || !isTail(at + 2)) return {0, 0};
        const std::uint32_t code = (first << 12) + (byteAt(at + 1) << 6) + byteAt(at + 2) - 0xE2080;
        return {isSurrogate(code) ? 0 : 3, code};
    }
    if (left < 4 || at[1] >= -0x50 || !isTail(at + 2) || !isTail(at + 3)) return {0, 0};
    const std::uint32_t code =
        (first << 18) + (byteAt(at + 1) << 12) + (byteAt(at + 2) << 6) + byteAt(at + 3) - 0x3C82080;
    return {code - 0x10000 < 0x100000 ? 4 : 0, code};
}

/// Encodes one character that is in order and fits.
inline bool encodeOne(const char16_t*& in, const char16_t* inEnd, signed char*& out,
                      const signed char* outEnd)
{
    const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<signed char>(byte); };
    const std::ptrdiff_t room = outEnd - out;
    const std::uint32_t unit = *in;
    if (unit < 0x80) {
        if (room < 1) return false;
        put(unit);
    } else if (unit < 0x800) {
        if (room < 2) return false;
        put(0xC0 | unit >> 6);
        put(0x80 | (unit & 0x3F));
    } else if (!isSurrogate(unit)) {
        if (room < 3) return false;
        put(0xE0 | unit >> 12);
        put(0x80 | (unit >> 6 & 0x3F));
        put(0x80 | (unit & 0x3F));
    } else {
        if (room < 4 || !isLeading(unit) || inEnd - in < 2 || !isTrailing(in[1])) return false;
        const std::uint32_t code = combined(in[0], in[1]);
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
        ++in;
    }
    ++in;
    return true;
}

} // namespace

DecoderStop decodeUtf8Portably(const signed char* in, const signed char* inEnd, char16_t* out,
                               char16_t* outEnd, std::ptrdiff_t most)
{
    const signed char* const limit = in + std::min(most, inEnd - in);
    while (in < limit) {
        if (inEnd - in >= STEP && outEnd - out >= STEP && isAscii(in)) {
            char16_t units[STEP];
            for (std::ptrdiff_t i = 0; i < STEP; ++i) units[i] = static_cast<char16_t>(in[i]);
            std::memcpy(out, units, sizeof units);
            in += STEP;
            out += STEP;
            continue;
        }
        while (in < limit && *in >= 0 && out < outEnd) *out++ = static_cast<char16_t>(*in++);
        if (in >= limit || *in >= 0) break;
        do {
            const auto [length, code] = sequenceAt(in, inEnd - in);
            const std::ptrdiff_t units = code < 0x10000 ? 1 : 2;
            if (length == 0 || outEnd - out < units) return {in, out};
            if (units == 1) {
                *out++ = static_cast<char16_t>(code);
            } else {
                *out++ = leadingOf(code);
                *out++ = trailingOf(code);
            }
            in += length;
        } while (in < limit && *in < 0);
    }
    return {in, out};
}

EncoderStop encodeUtf8Portably(const char16_t* in, const char16_t* inEnd, signed char* out,
                               signed char* outEnd, std::ptrdiff_t most)
{
    const char16_t* const limit = in + std::min(most, inEnd - in);
    while (in < limit) {
        if (inEnd - in >= STEP && outEnd - out >= STEP && isAscii(in)) {
            signed char bytes[STEP];
            for (std::ptrdiff_t i = 0; i < STEP; ++i) bytes[i] = static_cast<signed char>(in[i]);
            std::memcpy(out, bytes, sizeof bytes);
            in += STEP;
            out += STEP;
            continue;
        }
        for (std::ptrdiff_t i = 0; i < STEP && in < limit; ++i) {
            if (!encodeOne(in, inEnd, out, outEnd)) return {in, out};
        }
    }
    return {in, out};
}

} // namespace orv::text::charset::internal
