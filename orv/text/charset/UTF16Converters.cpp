#include "orv/text/charset/UTF16Converters.h"

#include "orv/text/charset/internal/InByteOrder.h"
#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/WordSwap.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace orv::text::charset {

using internal::copySwapped;
using internal::DecoderRun;
using internal::EncoderRun;

namespace {

void copyWords(void* to, const void* from, std::ptrdiff_t count)
{
    if (count > 0) std::memcpy(to, from, static_cast<std::size_t>(count) * 2);
}

template <class Copy>
std::int32_t decode(DecoderRun&& run, Copy copy)
{
    const std::ptrdiff_t count = std::min(run.inLeft() / 2, run.outLeft());
    copy(run.out, run.in, count);
    run.in += 2 * count;
    run.out += count;
    return run.written();
}

template <class Copy>
std::int32_t encode(EncoderRun&& run, Copy copy)
{
    const std::ptrdiff_t count = std::min(run.inLeft(), run.outLeft() / 2);
    copy(run.out, run.in, count);
    run.in += count;
    run.out += 2 * count;
    return static_cast<std::int32_t>(count);
}

constexpr signed char byte(int value)
{
    return static_cast<signed char>(value);
}

} // namespace

// Decoders

BTCUTF16::~BTCUTF16() noexcept(false) = default;

std::int32_t BTCUTF16::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return sameEncodingConvert(src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

BTCUTF16LE::~BTCUTF16LE() noexcept(false) = default;

std::int32_t BTCUTF16LE::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return decode({src, srcPos, srcEnd, dst, dstPos, dstEnd}, copyWords);
}

const char16_t* BTCUTF16LE::getEncodingName() const
{
    return u"UTF-16LE";
}

BTCUTF16BE::~BTCUTF16BE() noexcept(false) = default;

std::int32_t BTCUTF16BE::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return decode({src, srcPos, srcEnd, dst, dstPos, dstEnd}, copySwapped);
}

const char16_t* BTCUTF16BE::getEncodingName() const
{
    return u"UTF-16BE";
}

// Encoders

CTBUTF16::~CTBUTF16() noexcept(false) = default;

std::int32_t CTBUTF16::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return sameEncodingConvert(src, srcPos, srcEnd, dst, dstPos, dstEnd);
}

std::int32_t CTBUTF16::flush(signed char*, std::int32_t*, std::int32_t)
{
    return 0;
}

CTBUTF16LE::CTBUTF16LE() noexcept
{
    m_substitution = {byte(0xFD), byte(0xFF)};
    m_substitutionLength = 2;
}

CTBUTF16LE::~CTBUTF16LE() noexcept(false) = default;

std::int32_t CTBUTF16LE::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return encode({src, srcPos, srcEnd, dst, dstPos, dstEnd}, copyWords);
}

const char16_t* CTBUTF16LE::getEncodingName() const
{
    return u"UTF-16LE";
}

CTBUTF16BE::CTBUTF16BE() noexcept
{
    m_substitution = {byte(0xFF), byte(0xFD)};
    m_substitutionLength = 2;
}

CTBUTF16BE::~CTBUTF16BE() noexcept(false) = default;

std::int32_t CTBUTF16BE::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return encode({src, srcPos, srcEnd, dst, dstPos, dstEnd}, copySwapped);
}

const char16_t* CTBUTF16BE::getEncodingName() const
{
    return u"UTF-16BE";
}

template class InByteOrder<BTCUTF16, std::endian::little>;
template class InByteOrder<BTCUTF16, std::endian::big>;
template class InByteOrder<CTBUTF16, std::endian::little>;
template class InByteOrder<CTBUTF16, std::endian::big>;

} // namespace orv::text::charset
