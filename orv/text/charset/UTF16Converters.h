#pragma once

#include "orv/text/charset/UTFConverters.h"

#include <bit>
#include <cstdint>

namespace orv::text::charset {

/// UTF-16 in an order of bytes that a derived class decides. Byte-order marks are characters like
/// any other.
///
/// Nothing fails here: lone surrogates pass, and an odd last byte stays unconsumed.
class ORV_API BTCUTF16 : public ByteToCharUTF {
public:
    ~BTCUTF16() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
};

extern template class InByteOrder<BTCUTF16, std::endian::little>;
extern template class InByteOrder<BTCUTF16, std::endian::big>;

/// UTF-16, low byte first. For another order derive from BTCUTF16, whose convert() asks the hook.
class ORV_API BTCUTF16LE : public InByteOrder<BTCUTF16, std::endian::little> {
public:
    ~BTCUTF16LE() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-16, high byte first. For another order derive from BTCUTF16, whose convert() asks the hook.
class ORV_API BTCUTF16BE : public InByteOrder<BTCUTF16, std::endian::big> {
public:
    ~BTCUTF16BE() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-16 in an order of bytes that a derived class decides. No byte-order mark is written.
///
/// Nothing fails here: lone surrogates pass. convert() returns the number of units, half of what
/// the destination position moves by.
class ORV_API CTBUTF16 : public CharToByteUTF {
public:
    ~CTBUTF16() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    /// Returns 0.
    std::int32_t flush(signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
};

extern template class InByteOrder<CTBUTF16, std::endian::little>;
extern template class InByteOrder<CTBUTF16, std::endian::big>;

/// UTF-16, low byte first. For another order derive from CTBUTF16, whose convert() asks the hook.
class ORV_API CTBUTF16LE : public InByteOrder<CTBUTF16, std::endian::little> {
public:
    CTBUTF16LE() noexcept;
    ~CTBUTF16LE() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

/// UTF-16, high byte first. For another order derive from CTBUTF16, whose convert() asks the hook.
class ORV_API CTBUTF16BE : public InByteOrder<CTBUTF16, std::endian::big> {
public:
    CTBUTF16BE() noexcept;
    ~CTBUTF16BE() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;
};

} // namespace orv::text::charset
