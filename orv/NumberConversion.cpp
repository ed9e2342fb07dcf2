#include "orv/Number.h"
#include "orv/String.h"
#include "orv/math/BigDecimal.h"
#include "orv/math/BigInteger.h"

namespace orv {

math::BigInteger Number::toBigInteger() const
{
    return {toInt64()};
}

math::BigDecimal Number::toBigDecimal() const
{
    return {toDouble()};
}

std::int64_t Number::parseInt64(const String& text)
{
    return parseBigInteger(text).toInt64();
}

std::uint64_t Number::parseUInt64(const String& text, std::int32_t radix)
{
    return math::BigInteger(text, radix).toUInt64();
}

math::BigInteger Number::parseBigInteger(const String& text)
{
    return math::BigInteger(text, 10);
}

math::BigDecimal Number::parseBigDecimal(const String& text)
{
    return math::BigDecimal(text);
}

} // namespace orv
