#include "orv/math/BigDecimal.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/internal/Truncated.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace orv::math {

namespace {

/// No more bits than 10 to the power `places` has.
std::int64_t bitsOfPower(std::int64_t places) noexcept
{
    return 3 * places + 1;
}

BigInteger tenToThe(std::int64_t places)
{
    if (places > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    BigInteger power(10);
    power.pow(static_cast<std::int32_t>(places));
    return power;
}

/// value * 10^places, or cut off where `places` is negative.
void movePoint(BigInteger& value, std::int64_t places)
{
    if (places > 0 && !value.isZero()) {
        value.multiply(tenToThe(places));
    } else if (places < 0 && bitsOfPower(-places) > value.getBitCount()) {
        value = 0; // a power that is longer than the number need not be built
    } else if (places < 0) {
        BigInteger unused;
        value.divide(tenToThe(-places), unused);
    }
}

} // namespace

BigDecimal::BigDecimal(const BigDecimal& other)
    : Number(other), m_value(other.m_value), m_scale(other.m_scale)
{
}

BigDecimal::BigDecimal(const BigInteger& value, std::int32_t scale) : m_value(value), m_scale(scale)
{
}

BigDecimal::BigDecimal(float value) : BigDecimal(static_cast<double>(value)) {}

BigDecimal::BigDecimal(double value)
{
    parseFixed(value);
}

BigDecimal::BigDecimal(const String& text)
{
    parseDecimal(text);
}

BigDecimal& BigDecimal::operator=(const BigDecimal& other)
{
    m_value = other.m_value;
    m_scale = other.m_scale;
    return *this;
}

BigDecimal& BigDecimal::operator=(std::int32_t value) noexcept
{
    m_value = value;
    m_scale = 0;
    return *this;
}

BigDecimal& BigDecimal::operator=(std::uint32_t value) noexcept
{
    m_value = value;
    m_scale = 0;
    return *this;
}

BigDecimal& BigDecimal::operator=(double value)
{
    parseFixed(value);
    return *this;
}

BigDecimal::~BigDecimal() noexcept(false) = default;

// As a Number

std::int32_t BigDecimal::compareTo(const Object& other) const
{
    if (this == &other) return 0;
    const Number* const number = dynamic_cast<const Number*>(&other);
    if (number == nullptr) throwCastFailed();
    return compareTo(number->toBigDecimal());
}

String BigDecimal::toString() const
{
    String digits = m_value.toString(10);
    const std::int32_t count = digits.getLength();
    if (m_scale >= count) {
        digits.insert(0, String(u'0', m_scale - count));
        digits.insert(0, u"0.", 2);
    } else if (m_scale >= 1) {
        digits.insert(count - m_scale, u".", 1);
    }
    return digits;
}

std::int64_t BigDecimal::toInt64() const
{
    return ::orv::internal::truncated(toDouble());
}

double BigDecimal::toDouble() const
{
    constexpr std::int32_t longest = 255;
    const String text = toString();
    if (text.getLength() <= longest) return ORVStrToDW(text.getData(), nullptr);
    return ORVStrToDW(text.substring(0, longest).getData(), nullptr);
}

BigInteger BigDecimal::toBigInteger() const
{
    BigInteger result(m_value);
    movePoint(result, -std::int64_t{m_scale});
    return result;
}

BigDecimal BigDecimal::toBigDecimal() const
{
    return *this;
}

// Arithmetic

void BigDecimal::add(const BigDecimal& other)
{
    m_value.add(other.m_value);
    m_scale = std::max(m_scale, other.m_scale);
}

void BigDecimal::subtract(const BigDecimal& other)
{
    m_value.subtract(other.m_value);
    m_scale = std::max(m_scale, other.m_scale);
}

void BigDecimal::multiply(const BigDecimal& other)
{
    m_value.multiply(other.m_value);
    m_scale = static_cast<std::int32_t>(static_cast<std::uint32_t>(m_scale) +
                                        static_cast<std::uint32_t>(other.m_scale));
}

void BigDecimal::divide(const BigDecimal& other, std::int32_t newScale)
{
    BigInteger quotient(m_value);
    BigInteger divisor(other.m_value);
    const std::int64_t missing = std::int64_t{other.m_scale} + newScale - m_scale;
    if (missing < 0) {
        movePoint(divisor, -missing);
    } else {
        movePoint(quotient, missing);
    }

    BigInteger rest;
    quotient.divide(divisor, rest);
    rest.multiply(2);
    if (!rest.isZero() && rest.compareTo(other.m_value) >= 0) {
        quotient.add(quotient.isNegative() ? -1 : 1);
    }
    m_value = quotient;
    m_scale = newScale;
}

void BigDecimal::setScale(std::int32_t newScale)
{
    movePoint(m_value, std::int64_t{newScale} - m_scale);
    m_scale = newScale;
}

BigInteger BigDecimal::abs() const
{
    BigInteger magnitude(m_value);
    magnitude.abs();
    return magnitude;
}

std::int32_t BigDecimal::compareTo(const BigDecimal& other) const
{
    BigInteger difference(m_value);
    difference.subtract(other.m_value);
    if (difference.isZero()) return 0;
    return difference.isNegative() ? -1 : 1;
}

// Text

void BigDecimal::parseDecimal(const String& text)
{
    const std::int32_t point = text.indexOf(u'.');
    if (point < 0) {
        m_value = BigInteger(text, 10);
        return;
    }
    const char16_t* const units = text.getData();
    std::int32_t end = text.getLength();
    while (end > point + 2 && units[end - 1] == u'0') --end;

    const std::int32_t places = end - point - 1;
    String digits(units, point, end);
    digits.append(units + point + 1, places);
    m_value = BigInteger(digits, 10);
    m_scale = places;
}

/// Reads the value as "%f" prints it in the "C" locale.
void BigDecimal::parseFixed(double value)
{
    constexpr int places = 6;
    constexpr int longest = std::numeric_limits<double>::max_exponent10 + places + 4;
    char text[longest];
    char* const end =
        std::to_chars(text, text + longest, value, std::chars_format::fixed, places).ptr;
    char16_t units[longest];
    const auto count = std::copy(text, end, units) - units;
    parseDecimal(String(units, static_cast<std::int32_t>(count)));
}

} // namespace orv::math
