#include "orv/text/charset/UTF8Converters.h"

#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"
#include "orv/text/charset/internal/Utf8Kernels.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;

namespace {

constexpr std::uint32_t REPLACEMENT = 0xFFFD;

/// Length of a sequence by its first byte; 0 for a byte that begins none.
constexpr std::ptrdiff_t sequenceLength(unsigned char first)
{
    if (first < 0x80) return 1;
    if (first < 0xC2) return 0;
    if (first < 0xE0) return 2;
    if (first < 0xF0) return 3;
    return first < 0xF5 ? 4 : 0;
}

constexpr bool isTail(signed char byte)
{
    return byte < -0x40;
}

/// Whether the bytes behind the first one, all there, fit it.
bool isWellFormed(const signed char* at, std::ptrdiff_t length)
{
    if (length == 4 && at[1] >= -0x50) return false;
    return std::all_of(at + 1, at + length, isTail);
}

/// The value of a well-formed sequence.
std::uint32_t valueOf(const signed char* at, std::ptrdiff_t length)
{
    // What the marks of all bytes of a sequence add up to.
    constexpr std::array<std::uint32_t, 5> marks{0, 0, 0x3080, 0xE2080, 0x3C82080};
    std::uint32_t value = 0;
    for (std::ptrdiff_t i = 0; i < length; ++i) {
        value = value * 64 + static_cast<unsigned char>(at[i]);
    }
    return value - marks[static_cast<std::size_t>(length)];
}

std::ptrdiff_t encodedLength(std::uint32_t code)
{
    if (code < 0x80) return 1;
    if (code < 0x800) return 2;
    return code < 0x10000 ? 3 : 4;
}

signed char* encode(std::uint32_t code, std::ptrdiff_t length, signed char* out)
{
    constexpr std::array<std::uint32_t, 5> marks{0, 0, 0xC0, 0xE0, 0xF0};
    for (std::ptrdiff_t i = length - 1; i > 0; --i, code >>= 6) {
        out[i] = static_cast<signed char>(0x80 | (code & 0x3F));
    }
    out[0] = static_cast<signed char>(marks[static_cast<std::size_t>(length)] | code);
    return out + length;
}

} // namespace

// The decoder

BTCUTF8::~BTCUTF8() noexcept(false) = default;

bool BTCUTF8::convertOne(DecoderRun& run)
{
    std::ptrdiff_t length = sequenceLength(static_cast<unsigned char>(*run.in));
    if (length > run.inLeft() || run.full()) return false;

    std::uint32_t value = REPLACEMENT;
    if (length == 0 || !isWellFormed(run.in, length)) {
        length = 1;
    } else {
        value = valueOf(run.in, length);
    }
    if (value < 0x10000) {
        if (internal::isSurrogate(value)) {
            internal::throwInvalid(u"Invalid UTF-8 sequence (decoded chars in surrogate range)");
        }
        *run.out++ = static_cast<char16_t>(value);
    } else if (value > 0x10FFFF) {
        if (!m_substitutionMode) internal::throwUnmappable();
        if (run.outLeft() <= m_substitutionLength) return false;
        run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
    } else {
        if (run.outLeft() < 2) return false;
        *run.out++ = internal::leadingOf(value);
        *run.out++ = internal::trailingOf(value);
    }
    run.in += length;
    return true;
}

std::int32_t BTCUTF8::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                              char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    const std::int32_t start = *dstPos;
    if (!internal::convertedBy(internal::decodeUtf8, src, srcPos, srcEnd, dst, dstPos, dstEnd)) {
        convertRest({src, srcPos, srcEnd, dst, dstPos, dstEnd});
    }
    return *dstPos - start;
}

void BTCUTF8::convertRest(DecoderRun&& run)
{
    while (convertOne(run) && !run.takenBy(internal::decodeUtf8)) {
    }
}

std::int32_t BTCUTF8::flush(char16_t*, std::int32_t*, std::int32_t)
{
    return 0;
}

const char16_t* BTCUTF8::getEncodingName() const
{
    return u"UTF-8";
}

std::int32_t BTCUTF8::getMaxBytesPerChar() const
{
    return 6;
}

std::int32_t BTCUTF8::getMaxCharsPerByte() const
{
    return 4;
}

// The encoder

CTBUTF8::~CTBUTF8() noexcept(false) = default;

bool CTBUTF8::convertOne(EncoderRun& run)
{
    const char16_t unit = *run.in;
    std::uint32_t code = unit;
    if (m_leading != 0) {
        if (!internal::isTrailing(unit)) internal::throwLoneLeading();
        code = internal::combined(m_leading, unit);
        m_leading = 0;
    } else if (internal::isLeading(unit)) {
        m_leading = unit;
        ++run.in;
        return true;
    }
    const std::ptrdiff_t length = encodedLength(code);
    if (run.outLeft() < length) return false;
    run.out = encode(code, length, run.out);
    ++run.in;
    return true;
}

std::int32_t CTBUTF8::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                              signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    const std::int32_t start = *dstPos;
    if (m_leading != 0 ||
        !internal::convertedBy(internal::encodeUtf8, src, srcPos, srcEnd, dst, dstPos, dstEnd)) {
        convertRest({src, srcPos, srcEnd, dst, dstPos, dstEnd});
    }
    return *dstPos - start;
}

void CTBUTF8::convertRest(EncoderRun&& run)
{
    while (!run.exhausted() && convertOne(run)) {
        if (m_leading == 0 && run.takenBy(internal::encodeUtf8)) break;
    }
}

std::int32_t CTBUTF8::flush(signed char*, std::int32_t*, std::int32_t)
{
    if (m_leading != 0) internal::throwLoneLeading();
    return 0;
}

void CTBUTF8::reset()
{
    m_leading = 0;
}

const char16_t* CTBUTF8::getEncodingName() const
{
    return u"UTF-8";
}

std::int32_t CTBUTF8::getMaxBytesPerChar() const
{
    return 6;
}

std::int32_t CTBUTF8::getMaxCharsPerByte() const
{
    return 1;
}

} // namespace orv::text::charset
