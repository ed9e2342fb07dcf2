#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv {

namespace math {
class BigDecimal;
class BigInteger;
} // namespace math

/// A number in an object, so that it can go into collections and through interfaces.
///
/// Any number converts to any width. Nothing checks a range: integers keep their low bits, and
/// floating-point values are cut toward zero first. Numbers of different classes compare and hash
/// too, but each compares in its own type; see the leaf classes.
class ORV_API Number : public Object {
public:
    ~Number() noexcept(false) override {}

    /// Whether compareTo() gives 0. Throws CastFailedException where `other` is no Number.
    bool equals(const Object& other) const override;
    /// toULong(): equal integers hash alike in all classes, and fractions do not count.
    std::uint32_t hashCode() const override;

    /// The value in the type named. Nothing is checked: what does not fit is cut to its low bits,
    /// and fractions are cut off.
    virtual std::int64_t toInt64() const = 0;
    virtual double toDouble() const = 0;
    virtual std::int8_t toByte() const;
    virtual std::int16_t toShort() const;
    virtual std::int32_t toInt() const;
    virtual std::int32_t toLong() const;
    virtual std::uint8_t toUByte() const;
    virtual std::uint16_t toUShort() const;
    virtual std::uint32_t toUInt() const;
    virtual std::uint32_t toULong() const;
    virtual float toFloat() const;
    /// By default the value of toInt64().
    virtual math::BigInteger toBigInteger() const;
    /// By default the BigDecimal of toDouble(): six places at most, and zero throws
    /// Exception("Number Format Exception").
    virtual math::BigDecimal toBigDecimal() const;
    virtual std::int8_t toInt8() const;
    virtual std::int16_t toInt16() const;
    virtual std::int32_t toInt32() const;
    virtual std::uint8_t toUInt8() const;
    virtual std::uint16_t toUInt16() const;
    virtual std::uint32_t toUInt32() const;
    /// By default the bits of toInt64().
    virtual std::uint64_t toUInt64() const;

    // Numbers from text. These read a number behind leading blanks and a sign up to the first unit
    // that does not belong to it, clamp it to 32 bits and keep the low bits that the result has
    // room for. Text without a number gives 0.

    static std::int8_t parseByte(const String& text);
    static std::int8_t parseInt8(const String& text);
    static std::int16_t parseShort(const String& text);
    static std::int16_t parseInt16(const String& text);
    static std::int32_t parseInt(const String& text);
    static std::int32_t parseInt32(const String& text);
    static std::int32_t parseLong(const String& text);
    static std::uint8_t parseUByte(const String& text, std::int32_t radix = 10);
    static std::uint8_t parseUInt8(const String& text, std::int32_t radix = 10);
    static std::uint16_t parseUShort(const String& text, std::int32_t radix = 10);
    static std::uint16_t parseUInt16(const String& text, std::int32_t radix = 10);
    static std::uint32_t parseUInt(const String& text, std::int32_t radix = 10);
    static std::uint32_t parseUInt32(const String& text, std::int32_t radix = 10);
    static std::uint32_t parseULong(const String& text, std::int32_t radix = 10);
    static double parseDouble(const String& text);
    static float parseFloat(const String& text);

    // These read as math::BigInteger and math::BigDecimal do, which refuse the text of a zero with
    // Exception("Number Format Exception"). The 64-bit forms keep 63 bits and the sign.

    static std::int64_t parseInt64(const String& text);
    static std::uint64_t parseUInt64(const String& text, std::int32_t radix = 10);
    static math::BigInteger parseBigInteger(const String& text);
    static math::BigDecimal parseBigDecimal(const String& text);
};

} // namespace orv
