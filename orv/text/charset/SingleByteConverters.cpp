#include "orv/text/charset/SingleByteConverters.h"

#include "orv/text/charset/internal/PlainRun.h"
#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;

// Any mapping

BTCSingleByte::~BTCSingleByte() noexcept(false) = default;

bool BTCSingleByte::convertOne(DecoderRun& run)
{
    char16_t unit = convertByte(*run.in);
    if (unit == u'\uFFFD') {
        if (!m_substitutionMode) internal::throwUnmappable();
        if (m_substitutionLength != 1) {
            ++run.in;
            return true;
        }
        unit = m_substitution[0];
    }
    if (run.full()) return false;
    *run.out++ = unit;
    ++run.in;
    return true;
}

std::int32_t BTCSingleByte::convert(const signed char* src, std::int32_t* srcPos,
                                    std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                    std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    while (!run.exhausted() && convertOne(run)) {
    }
    return run.written();
}

std::int32_t BTCSingleByte::flush(char16_t*, std::int32_t*, std::int32_t)
{
    return 0;
}

std::int32_t BTCSingleByte::getMaxBytesPerChar() const
{
    return 1;
}

std::int32_t BTCSingleByte::getMaxCharsPerByte() const
{
    return 1;
}

CTBSingleByte::~CTBSingleByte() noexcept(false) = default;

bool CTBSingleByte::substitute(EncoderRun& run)
{
    if (!m_substitutionMode) internal::throwUnmappable();
    if (m_substitutionLength == 1) {
        if (run.full()) return false;
        *run.out++ = m_substitution[0];
    }
    ++run.in;
    return true;
}

bool CTBSingleByte::convertOne(EncoderRun& run)
{
    const char16_t unit = *run.in;
    if (m_leading != 0) {
        if (!internal::isTrailing(unit)) internal::throwLoneLeading();
        m_leading = 0;
        return substitute(run);
    }
    const signed char byte = convertChar(unit);
    if (byte == 0 && unit != 0) {
        if (internal::isTrailing(unit)) internal::throwLoneTrailing();
        if (!internal::isLeading(unit)) return substitute(run);
        m_leading = unit;
        ++run.in;
        return true;
    }
    if (run.full()) return false;
    *run.out++ = byte;
    ++run.in;
    return true;
}

std::int32_t CTBSingleByte::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                    signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    while (!run.exhausted() && convertOne(run)) {
    }
    return run.written();
}

std::int32_t CTBSingleByte::flush(signed char*, std::int32_t*, std::int32_t)
{
    if (m_leading != 0) internal::throwLoneLeading();
    return 0;
}

void CTBSingleByte::reset()
{
    m_leading = 0;
}

std::int32_t CTBSingleByte::getMaxBytesPerChar() const
{
    return 1;
}

std::int32_t CTBSingleByte::getMaxCharsPerByte() const
{
    return 1;
}

// ASCII

BTCASCII::~BTCASCII() noexcept(false) = default;

std::int32_t BTCASCII::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        internal::takePlain(
            run, [](signed char byte) { return static_cast<unsigned char>(byte & 0x80); },
            [](signed char byte) { return static_cast<char16_t>(byte); });
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

const char16_t* BTCASCII::getEncodingName() const
{
    return u"ASCII";
}

char16_t BTCASCII::convertByte(signed char byte)
{
    return byte >= 0 ? static_cast<char16_t>(byte) : u'\uFFFD';
}

CTBASCII::~CTBASCII() noexcept(false) = default;

std::int32_t CTBASCII::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        if (!isPending()) {
            internal::takePlain(
                run, [](char16_t unit) { return static_cast<std::uint16_t>(unit & 0xFF80); },
                [](char16_t unit) { return static_cast<signed char>(unit); });
        }
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

const char16_t* CTBASCII::getEncodingName() const
{
    return u"ASCII";
}

signed char CTBASCII::convertChar(char16_t unit)
{
    return static_cast<signed char>(unit < 0x80 ? unit : 0);
}

// ISO 8859-1

BTCISO8859_1::~BTCISO8859_1() noexcept(false) = default;

std::int32_t BTCISO8859_1::convert(const signed char* src, std::int32_t* srcPos,
                                   std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                   std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    internal::takePlain(
        run, [](signed char) { return 0; },
        [](signed char byte) { return static_cast<char16_t>(std::int16_t{byte}); });
    return run.written();
}

const char16_t* BTCISO8859_1::getEncodingName() const
{
    return u"ISO8859_1";
}

char16_t BTCISO8859_1::convertByte(signed char byte)
{
    return static_cast<unsigned char>(byte);
}

CTBISO8859_1::~CTBISO8859_1() noexcept(false) = default;

std::int32_t CTBISO8859_1::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                   signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        if (!isPending()) {
            internal::takePlain(
                run, [](char16_t unit) { return static_cast<std::uint16_t>(unit & 0xFF00); },
                [](char16_t unit) { return static_cast<signed char>(unit); });
        }
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

const char16_t* CTBISO8859_1::getEncodingName() const
{
    return u"ISO8859_1";
}

signed char CTBISO8859_1::convertChar(char16_t unit)
{
    return static_cast<signed char>(unit < 0x100 ? unit : 0);
}

} // namespace orv::text::charset
