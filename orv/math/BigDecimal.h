#pragma once

#include "orv/math/BigInteger.h"

namespace orv::math {

/// A decimal number: an unscaled BigInteger and a count of decimal places, the scale. Its
/// arithmetic changes the object in place.
///
///     BigDecimal price(String(u"12.50"));     // 125 at scale 1
///     price.setScale(2);                      // 1250 at scale 2, prints 12.50
///     BigDecimal rebate(BigInteger(75), 2);
///     price.subtract(rebate);                 // 11.75
///
/// Bring operands to one scale by setScale() before they are added, subtracted or compared: these
/// work on the unscaled numbers as they stand, so that 1.5 and 2.25 add to 2.40. There is no
/// context and no choice of rounding: setScale() cuts, divide() rounds half away from zero.
///
/// The products are those of BigInteger::multiply(), exact up to a factor of two bytes: a
/// setScale() by five places or more is not exact for a number of two bytes or more.
///
/// Failures, bounds and threads are those of BigInteger.
class ORV_API BigDecimal : public Number {
public:
    BigDecimal() noexcept {}
    BigDecimal(const BigDecimal& other);
    BigDecimal(const BigInteger& value, std::int32_t scale);
    BigDecimal(std::int32_t value) noexcept : m_value(value) {}
    BigDecimal(std::uint32_t value) noexcept : m_value(value) {}
    BigDecimal(long value) noexcept : m_value(value) {}
    BigDecimal(unsigned long value) noexcept : m_value(value) {}
    BigDecimal(long long value) noexcept : m_value(value) {}
    BigDecimal(unsigned long long value) noexcept : m_value(value) {}
    /// Reads the value as printed with six places. Throws Exception("Number Format Exception") for
    /// what prints as zero; what is not finite becomes 0.
    BigDecimal(float value);
    BigDecimal(double value);
    /// Reads `text` with at most one point; without one the scale is 0. Zeros at the end of the
    /// fraction are dropped but for a first one: 12.500 is 125 at scale 1, 1.000 is 10 at scale 1.
    /// The digits without the point are read as BigInteger reads them in radix 10, with all that
    /// goes for zeros and other units: 0.0 throws Exception("Number Format Exception").
    explicit BigDecimal(const String& text);

    BigDecimal& operator=(const BigDecimal& other);
    BigDecimal& operator=(std::int32_t value) noexcept;
    BigDecimal& operator=(std::uint32_t value) noexcept;
    /// As the constructor; a value that is not finite leaves the scale as it is.
    BigDecimal& operator=(double value);

    ~BigDecimal() noexcept(false) override;

    /// -1, 0 or 1; `other` is taken as its toBigDecimal(). Throws CastFailedException where `other`
    /// is no Number.
    std::int32_t compareTo(const Object& other) const override;
    /// The unscaled digits with a point before the last getScale() of them, filled up with zeros
    /// after "0.". A "-" counts as a digit here: -15 at scale 2 is -.15, -5 at scale 3 is 0.0-5. A
    /// negative scale prints the unscaled digits.
    String toString() const override;
    /// toDouble() cut toward zero; what does not fit is -2^63.
    std::int64_t toInt64() const override;
    /// What the first 255 units of toString() read as.
    double toDouble() const override;
    /// The integer part.
    BigInteger toBigInteger() const override;
    BigDecimal toBigDecimal() const override;

    /// Adds the unscaled numbers; the scale becomes the larger one.
    void add(const BigDecimal& other);
    void subtract(const BigDecimal& other);
    /// Multiplies the unscaled numbers; the scales add up.
    void multiply(const BigDecimal& other);

    /// Divides to `newScale` places, rounding half away from zero. The test for a half takes the
    /// unscaled `other` with its sign: a negative divisor rounds every rest away from zero, and
    /// where this scale is above the sum of the other one and `newScale`, the test is against
    /// another number than the divisor. Throws Exception("Divide by zero.").
    void divide(const BigDecimal& other, std::int32_t newScale);

    /// Changes the places, cutting those that go.
    void setScale(std::int32_t newScale);
    void negate() noexcept { m_value.negate(); }

    /// Decimal places, and whether the sign is minus, which a zero can have too.
    std::int32_t getScale() const noexcept { return m_scale; }
    bool isNegative() const noexcept { return m_value.isNegative(); }
    /// The unscaled magnitude.
    BigInteger abs() const;
    /// The bytes of the unscaled magnitude; see BigInteger::getData().
    const signed char* getData() const noexcept { return m_value.getData(); }
    std::int32_t getSize() const noexcept { return m_value.getSize(); }

    /// -1, 0 or 1, by the difference of the unscaled numbers.
    std::int32_t compareTo(const BigDecimal& other) const;

protected:
    /// What the constructor does with text; without a point the scale stays.
    void parseDecimal(const String& text);

private:
    void parseFixed(double value);

    BigInteger m_value;
    std::int32_t m_scale = 0;
};

} // namespace orv::math
