#pragma once

#include "orv/Number.h"

#include <cstdint>

namespace orv {

/// What the classes that hold one number have in common. `Kind` is the base class, `Value` the type
/// of the number, to and from which objects convert on their own.
template <class Kind, class Value>
class ORV_API BoxedNumber : public Kind {
public:
    BoxedNumber(Value value) noexcept : m_value(value) {}
    BoxedNumber(const BoxedNumber& other) noexcept : Kind(other), m_value(other.m_value) {}
    /// The value of `other` in this type.
    explicit BoxedNumber(const Number& other);
    /// Reads decimal text; see Number's parse operations.
    explicit BoxedNumber(const String& text);
    BoxedNumber& operator=(const BoxedNumber& other) noexcept = default;
    BoxedNumber& operator=(Value value) noexcept
    {
        m_value = value;
        return *this;
    }

    operator Value() const noexcept { return m_value; }

    /// Floating-point values are cut toward zero; what does not fit is -2^63.
    std::int64_t toInt64() const override;
    double toDouble() const override;

    /// The order against `other`, which is first converted to this type: numbers of two types may
    /// be equal one way and not the other. For types up to 32 bits the result is the difference,
    /// which wraps, so that 32-bit numbers far apart are in the wrong order; else it is -1, 0 or 1,
    /// and 1 where a NaN stands on either side.
    std::int32_t compareTo(const Number& other) const;
    /// The same. Throws CastFailedException where `other` is no Number.
    std::int32_t compareTo(const Object& other) const override;

private:
    Value m_value;
};

} // namespace orv
