#pragma once

#include "orv/BoxedNumber.h"
#include "orv/Failure.h"
#include "orv/internal/Truncated.h"
#include "orv/math/BigInteger.h"

#include <concepts>

/// \file
/// The body of BoxedNumber, for the two sources that instantiate it.

namespace orv {

namespace internal {

template <class Value>
Value valueOf(const Number& number)
{
    if constexpr (std::same_as<Value, std::int8_t>) return number.toInt8();
    if constexpr (std::same_as<Value, std::int16_t>) return number.toInt16();
    if constexpr (std::same_as<Value, std::int32_t>) return number.toInt32();
    if constexpr (std::same_as<Value, std::int64_t>) return number.toInt64();
    if constexpr (std::same_as<Value, std::uint8_t>) return number.toUInt8();
    if constexpr (std::same_as<Value, std::uint16_t>) return number.toUInt16();
    if constexpr (std::same_as<Value, std::uint32_t>) return number.toUInt32();
    if constexpr (std::same_as<Value, std::uint64_t>) return number.toUInt64();
    if constexpr (std::same_as<Value, float>) return number.toFloat();
    if constexpr (std::same_as<Value, double>) return number.toDouble();
}

template <class Value>
Value parsed(const String& text)
{
    if constexpr (std::same_as<Value, float>) {
        return Number::parseFloat(text);
    } else if constexpr (std::floating_point<Value>) {
        return Number::parseDouble(text);
    } else if constexpr (std::same_as<Value, std::int64_t>) {
        return Number::parseInt64(text);
    } else if constexpr (std::same_as<Value, std::uint64_t>) {
        return Number::parseUInt64(text, 10);
    } else if constexpr (std::signed_integral<Value>) {
        return static_cast<Value>(Number::parseInt(text));
    } else {
        return static_cast<Value>(Number::parseUInt(text, 10));
    }
}

template <class Value>
std::int32_t order(Value a, Value b) noexcept
{
    if constexpr (std::floating_point<Value> || sizeof(Value) == sizeof(std::int64_t)) {
        if (a == b) return 0;
        return a < b ? -1 : 1;
    } else {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) -
                                         static_cast<std::uint32_t>(b));
    }
}

} // namespace internal

template <class Kind, class Value>
BoxedNumber<Kind, Value>::BoxedNumber(const Number& other)
    : m_value(internal::valueOf<Value>(other))
{
}

template <class Kind, class Value>
BoxedNumber<Kind, Value>::BoxedNumber(const String& text) : m_value(internal::parsed<Value>(text))
{
}

template <class Kind, class Value>
std::int64_t BoxedNumber<Kind, Value>::toInt64() const
{
    if constexpr (std::floating_point<Value>) {
        return internal::truncated(m_value);
    } else {
        return static_cast<std::int64_t>(m_value);
    }
}

template <class Kind, class Value>
double BoxedNumber<Kind, Value>::toDouble() const
{
    if constexpr (std::same_as<Value, std::uint64_t>) {
        return math::BigInteger(m_value).toDouble();
    } else {
        return static_cast<double>(m_value);
    }
}

template <class Kind, class Value>
std::int32_t BoxedNumber<Kind, Value>::compareTo(const Number& other) const
{
    return this == &other ? 0 : internal::order(m_value, internal::valueOf<Value>(other));
}

template <class Kind, class Value>
std::int32_t BoxedNumber<Kind, Value>::compareTo(const Object& other) const
{
    if (this == &other) return 0;
    const Number* const number = dynamic_cast<const Number*>(&other);
    if (number == nullptr) throwCastFailed();
    return compareTo(*number);
}

} // namespace orv
