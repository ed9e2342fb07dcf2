#pragma once

#include "orv/BoxedNumber.h"

namespace orv {

/// The root of the signed integers in objects.
class ORV_API SignedInteger : public Number {
public:
    ~SignedInteger() noexcept(false) override;

    String toString() const override;
};

/// The root of the unsigned integers in objects.
class ORV_API UnsignedInteger : public Number {
public:
    ~UnsignedInteger() noexcept(false) override;

    /// toString(10).
    String toString() const override;
    math::BigInteger toBigInteger() const override;

    /// The digits in `radix`, 2 to 36, in lower case. Throws Exception("Number Format Exception")
    /// for another radix.
    virtual String toString(std::int32_t radix) const;
};

extern template class BoxedNumber<SignedInteger, std::int8_t>;
extern template class BoxedNumber<SignedInteger, std::int16_t>;
extern template class BoxedNumber<SignedInteger, std::int32_t>;
extern template class BoxedNumber<SignedInteger, std::int64_t>;
extern template class BoxedNumber<UnsignedInteger, std::uint8_t>;
extern template class BoxedNumber<UnsignedInteger, std::uint16_t>;
extern template class BoxedNumber<UnsignedInteger, std::uint32_t>;
extern template class BoxedNumber<UnsignedInteger, std::uint64_t>;

/// An 8-bit signed integer in an object.
class ORV_API Integer8 : public BoxedNumber<SignedInteger, std::int8_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Integer8() noexcept(false) override;

    String toString() const override;
};

/// A 16-bit signed integer in an object.
class ORV_API Integer16 : public BoxedNumber<SignedInteger, std::int16_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Integer16() noexcept(false) override;

    String toString() const override;
};

/// A 32-bit signed integer in an object.
class ORV_API Integer32 : public BoxedNumber<SignedInteger, std::int32_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Integer32() noexcept(false) override;

    String toString() const override;
};

/// A 64-bit signed integer in an object.
class ORV_API Integer64 : public BoxedNumber<SignedInteger, std::int64_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Integer64() noexcept(false) override;
};

/// An 8-bit unsigned integer in an object.
class ORV_API UInteger8 : public BoxedNumber<UnsignedInteger, std::uint8_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~UInteger8() noexcept(false) override;

    using UnsignedInteger::toString;
    String toString() const override;
};

/// A 16-bit unsigned integer in an object.
class ORV_API UInteger16 : public BoxedNumber<UnsignedInteger, std::uint16_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~UInteger16() noexcept(false) override;

    using UnsignedInteger::toString;
    String toString() const override;
};

/// A 32-bit unsigned integer in an object.
class ORV_API UInteger32 : public BoxedNumber<UnsignedInteger, std::uint32_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~UInteger32() noexcept(false) override;

    using UnsignedInteger::toString;
    String toString() const override;
};

/// A 64-bit unsigned integer in an object. toDouble() knows its low 63 bits only.
class ORV_API UInteger64 : public BoxedNumber<UnsignedInteger, std::uint64_t> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~UInteger64() noexcept(false) override;
};

} // namespace orv
