#include "orv/Integers.h"

#include "orv/String.h"
#include "orv/internal/BoxedNumberBody.h"

namespace orv {

template class BoxedNumber<SignedInteger, std::int8_t>;
template class BoxedNumber<SignedInteger, std::int16_t>;
template class BoxedNumber<SignedInteger, std::int32_t>;
template class BoxedNumber<SignedInteger, std::int64_t>;
template class BoxedNumber<UnsignedInteger, std::uint8_t>;
template class BoxedNumber<UnsignedInteger, std::uint16_t>;
template class BoxedNumber<UnsignedInteger, std::uint32_t>;
template class BoxedNumber<UnsignedInteger, std::uint64_t>;

SignedInteger::~SignedInteger() noexcept(false) = default;
UnsignedInteger::~UnsignedInteger() noexcept(false) = default;
Integer8::~Integer8() noexcept(false) = default;
Integer16::~Integer16() noexcept(false) = default;
Integer32::~Integer32() noexcept(false) = default;
Integer64::~Integer64() noexcept(false) = default;
UInteger8::~UInteger8() noexcept(false) = default;
UInteger16::~UInteger16() noexcept(false) = default;
UInteger32::~UInteger32() noexcept(false) = default;
UInteger64::~UInteger64() noexcept(false) = default;

String SignedInteger::toString() const
{
    return math::BigInteger(toInt64()).toString(10);
}

String UnsignedInteger::toString() const
{
    return toString(10);
}

math::BigInteger UnsignedInteger::toBigInteger() const
{
    return {toUInt64()};
}

String UnsignedInteger::toString(std::int32_t radix) const
{
    return math::BigInteger(toUInt64()).toString(radix);
}

String Integer8::toString() const
{
    return String::valueOf(toInt());
}

String Integer16::toString() const
{
    return String::valueOf(toInt());
}

String Integer32::toString() const
{
    return String::valueOf(toInt());
}

String UInteger8::toString() const
{
    return String::valueOf(toUInt());
}

String UInteger16::toString() const
{
    return String::valueOf(toUInt());
}

String UInteger32::toString() const
{
    return String::valueOf(toUInt());
}

} // namespace orv
