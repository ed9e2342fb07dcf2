#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include <bit>
#include <cstdint>

namespace orv::text::charset {

/// The root of the decoders of UTF-16 and UTF-32, which leave the order of the bytes to two hooks.
class ORV_API ByteToCharUTF : public ByteToCharConverter {
public:
    ~ByteToCharUTF() noexcept(false) override;

    /// Returns 0.
    std::int32_t flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// Turns a word of the byte form, read as it lies in memory, into its value, and back.
    virtual std::uint16_t convertUTF16(std::uint16_t word) = 0;
    virtual std::uint32_t convertUTF32(std::uint32_t word) = 0;

    /// Decodes UTF-16 through convertUTF16(), unit by unit; looks at no unit, so lone surrogates
    /// pass, and leaves an odd last byte. Returns the number of units.
    std::int32_t sameEncodingConvert(const signed char* src, std::int32_t* srcPos,
                                     std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                     std::int32_t dstEnd);
};

/// The root of the encoders of UTF-16 and UTF-32, which leave the order of the bytes to two hooks.
class ORV_API CharToByteUTF : public CharToByteConverter {
public:
    ~CharToByteUTF() noexcept(false) override;

    std::int32_t getMaxBytesPerChar() const override;
    std::int32_t getMaxCharsPerByte() const override;

protected:
    /// Turns a value into the word of the byte form, as it lies in memory.
    virtual std::uint16_t convertUTF16(std::uint16_t value) = 0;
    virtual std::uint32_t convertUTF32(std::uint32_t value) = 0;

    /// Encodes UTF-16 through convertUTF16(), unit by unit; looks at no unit, so lone surrogates
    /// pass. Returns the number of units, not of bytes.
    std::int32_t sameEncodingConvert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                     signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd);
};

/// A converter of UTF-16 or UTF-32 whose hooks are answered for one order of bytes.
template <class Converter, std::endian Order>
class ORV_API InByteOrder : public Converter {
protected:
    std::uint16_t convertUTF16(std::uint16_t word) override;
    std::uint32_t convertUTF32(std::uint32_t word) override;
};

} // namespace orv::text::charset
