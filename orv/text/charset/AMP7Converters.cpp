#include "orv/text/charset/AMP7Converters.h"

#include "orv/text/charset/internal/PlainRun.h"
#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;

namespace {

constexpr std::uint32_t REPLACEMENT = 0xFFFD;
constexpr std::uint32_t FIRST_UNMAPPABLE = 0xFFFFF;
constexpr int MOST_DIGITS = 5;

// Decoding

/// What stands at an "&".
struct Escape {
    enum class State { complete, waits, malformed };
    State state;
    std::uint32_t value = 0;
    std::ptrdiff_t length = 0;
};

constexpr Escape waits{Escape::State::waits};
constexpr Escape malformed{Escape::State::malformed};

constexpr int digitOf(signed char byte)
{
    if (byte >= '0' && byte <= '9') return byte - '0';
    if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
    if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
    return -1;
}

/// `at` is the "&" and a "_" follows it.
Escape numberAt(const signed char* at, const signed char* end)
{
    std::uint32_t value = 0;
    const signed char* next = at + 2;
    for (int digits = 0;; ++digits, ++next) {
        if (next == end) return waits;
        if (*next == ';') return {Escape::State::complete, value, next + 1 - at};
        const int digit = digitOf(*next);
        if (digit < 0 || digits == MOST_DIGITS) return malformed;
        value = value * 16 + static_cast<std::uint32_t>(digit);
    }
}

Escape nameAt(const signed char* at, const signed char* end, std::string_view name, char16_t value)
{
    const auto length = static_cast<std::ptrdiff_t>(name.size());
    const std::ptrdiff_t there = std::min(end - at, length);
    if (!std::equal(at, at + there, name.begin())) return malformed;
    if (there < length) return waits;
    return {Escape::State::complete, value, length};
}

/// The escape at the "&" at `at`.
Escape escapeAt(const signed char* at, const signed char* end)
{
    if (at + 1 == end) return waits;
    if (at[1] == '_') return numberAt(at, end);
    if (at[1] == 'Q') return nameAt(at, end, "&QUOT;", u'"');
    if (at[1] != 'A') return malformed;
    if (at + 2 == end) return waits;
    return at[2] == 'M' ? nameAt(at, end, "&AMP;", u'&') : nameAt(at, end, "&APOS;", u'\'');
}

// Encoding

/// 0 for the bytes of ASCII that stand for themselves.
constexpr unsigned char needsEscape(signed char byte)
{
    const bool printable = (byte >= 0x20) & (byte != 0x7F) & (byte != '&');
    const bool space = (byte == 0x09) | (byte == 0x0A) | (byte == 0x0D);
    return !(printable | space);
}

constexpr std::ptrdiff_t LONGEST_ESCAPE = 8;

/// Writes `&_`, the digits and ";" and returns their number.
std::ptrdiff_t printEscape(std::uint32_t code, signed char* out)
{
    int digits = 1;
    while (code >> (4 * digits) != 0) ++digits;
    *out++ = '&';
    *out++ = '_';
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        *out++ = static_cast<signed char>("0123456789ABCDEF"[code >> shift & 0xF]);
    }
    *out = ';';
    return digits + 3;
}

} // namespace

// The decoder

BTCAMP7::~BTCAMP7() noexcept(false) = default;

bool BTCAMP7::substitute(DecoderRun& run)
{
    if (!m_substitutionMode) internal::throwUnmappable();
    if (run.outLeft() <= m_substitutionLength) return false;
    run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
    *run.out++ = static_cast<char16_t>(REPLACEMENT);
    ++run.in;
    return true;
}

bool BTCAMP7::convertOne(DecoderRun& run)
{
    if (run.full()) return false;
    if (*run.in != '&') {
        if (*run.in < 0) return substitute(run);
        *run.out++ = static_cast<char16_t>(*run.in++);
        return true;
    }
    const Escape escape = escapeAt(run.in, run.inEnd);
    if (escape.state == Escape::State::waits) return false;
    if (escape.state == Escape::State::malformed || escape.value == REPLACEMENT) {
        return substitute(run);
    }
    if (internal::isSurrogate(escape.value)) {
        internal::throwInvalid(u"Invalid AMP-7 sequence (decoded chars in surrogate range)");
    }
    if (escape.value > 0xFFFF) {
        if (run.outLeft() < 2) return false;
        *run.out++ = internal::leadingOf(escape.value);
        *run.out++ = internal::trailingOf(escape.value);
    } else {
        *run.out++ = static_cast<char16_t>(escape.value);
    }
    run.in += escape.length;
    return true;
}

std::int32_t BTCAMP7::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                              char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        internal::takePlain(
            run,
            [](signed char byte) { return static_cast<unsigned char>((byte < 0) | (byte == '&')); },
            [](signed char byte) { return static_cast<char16_t>(byte); });
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

std::int32_t BTCAMP7::flush(char16_t*, std::int32_t*, std::int32_t)
{
    return 0;
}

const char16_t* BTCAMP7::getEncodingName() const
{
    return u"AMP-7";
}

std::int32_t BTCAMP7::getMaxBytesPerChar() const
{
    return LONGEST_ESCAPE;
}

std::int32_t BTCAMP7::getMaxCharsPerByte() const
{
    return 1;
}

// The encoder

CTBAMP7::~CTBAMP7() noexcept(false) = default;

bool CTBAMP7::convertOne(EncoderRun& run)
{
    std::uint32_t code = *run.in;
    std::ptrdiff_t width = 1;
    if (internal::isLeading(code)) {
        if (run.inLeft() < 2) return false;
        if (!internal::isTrailing(run.in[1])) internal::throwLoneLeading();
        code = internal::combined(run.in[0], run.in[1]);
        width = 2;
    }
    if (code >= FIRST_UNMAPPABLE) {
        if (!m_substitutionMode) internal::throwUnmappable();
        if (run.outLeft() <= m_substitutionLength) return false;
        run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
        run.in += width;
        return true;
    }
    signed char text[LONGEST_ESCAPE] = {'&', 'A', 'M', 'P', ';'};
    std::ptrdiff_t length = 5;
    if (code != u'&') {
        if (code < 0x80 && needsEscape(static_cast<signed char>(code)) == 0) {
            text[0] = static_cast<signed char>(code);
            length = 1;
        } else {
            length = printEscape(code, text);
        }
    }
    if (run.outLeft() < length) return false;
    run.out = std::copy_n(text, length, run.out);
    run.in += width;
    return true;
}

std::int32_t CTBAMP7::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                              signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        internal::takePlain(
            run, [](char16_t unit) { return static_cast<std::uint16_t>(unit & 0xFF80); },
            [](char16_t unit) { return static_cast<signed char>(unit); }, needsEscape);
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

std::int32_t CTBAMP7::flush(signed char*, std::int32_t*, std::int32_t)
{
    return 0;
}

const char16_t* CTBAMP7::getEncodingName() const
{
    return u"AMP-7";
}

std::int32_t CTBAMP7::getMaxBytesPerChar() const
{
    return LONGEST_ESCAPE;
}

std::int32_t CTBAMP7::getMaxCharsPerByte() const
{
    return 1;
}

} // namespace orv::text::charset
