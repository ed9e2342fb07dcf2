#include "orv/Number.h"

#include "orv/String.h"

namespace orv {

bool Number::equals(const Object& other) const
{
    return compareTo(other) == 0;
}

std::uint32_t Number::hashCode() const
{
    return toULong();
}

std::int8_t Number::toByte() const
{
    return toInt8();
}

std::int16_t Number::toShort() const
{
    return toInt16();
}

std::int32_t Number::toInt() const
{
    return toInt32();
}

std::int32_t Number::toLong() const
{
    return toInt32();
}

std::uint8_t Number::toUByte() const
{
    return toUInt8();
}

std::uint16_t Number::toUShort() const
{
    return toUInt16();
}

std::uint32_t Number::toUInt() const
{
    return toUInt32();
}

std::uint32_t Number::toULong() const
{
    return toUInt32();
}

float Number::toFloat() const
{
    return static_cast<float>(toDouble());
}

std::int8_t Number::toInt8() const
{
    return static_cast<std::int8_t>(toInt64());
}

std::int16_t Number::toInt16() const
{
    return static_cast<std::int16_t>(toInt64());
}

std::int32_t Number::toInt32() const
{
    return static_cast<std::int32_t>(toInt64());
}

std::uint8_t Number::toUInt8() const
{
    return static_cast<std::uint8_t>(toUInt64());
}

std::uint16_t Number::toUInt16() const
{
    return static_cast<std::uint16_t>(toUInt64());
}

std::uint32_t Number::toUInt32() const
{
    return static_cast<std::uint32_t>(toUInt64());
}

std::uint64_t Number::toUInt64() const
{
    return static_cast<std::uint64_t>(toInt64());
}

std::int8_t Number::parseByte(const String& text)
{
    return static_cast<std::int8_t>(parseInt(text));
}

std::int8_t Number::parseInt8(const String& text)
{
    return static_cast<std::int8_t>(parseInt(text));
}

std::int16_t Number::parseShort(const String& text)
{
    return static_cast<std::int16_t>(parseInt(text));
}

std::int16_t Number::parseInt16(const String& text)
{
    return static_cast<std::int16_t>(parseInt(text));
}

std::int32_t Number::parseInt(const String& text)
{
    return ORVStrToIW(text.getData());
}

std::int32_t Number::parseInt32(const String& text)
{
    return parseInt(text);
}

std::int32_t Number::parseLong(const String& text)
{
    return parseInt(text);
}

std::uint8_t Number::parseUByte(const String& text, std::int32_t radix)
{
    return static_cast<std::uint8_t>(parseUInt(text, radix));
}

std::uint8_t Number::parseUInt8(const String& text, std::int32_t radix)
{
    return static_cast<std::uint8_t>(parseUInt(text, radix));
}

std::uint16_t Number::parseUShort(const String& text, std::int32_t radix)
{
    return static_cast<std::uint16_t>(parseUInt(text, radix));
}

std::uint16_t Number::parseUInt16(const String& text, std::int32_t radix)
{
    return static_cast<std::uint16_t>(parseUInt(text, radix));
}

std::uint32_t Number::parseUInt(const String& text, std::int32_t radix)
{
    return ORVStrToULW(text.getData(), nullptr, radix);
}

std::uint32_t Number::parseUInt32(const String& text, std::int32_t radix)
{
    return parseUInt(text, radix);
}

std::uint32_t Number::parseULong(const String& text, std::int32_t radix)
{
    return parseUInt(text, radix);
}

double Number::parseDouble(const String& text)
{
    return ORVStrToDW(text.getData(), nullptr);
}

float Number::parseFloat(const String& text)
{
    return static_cast<float>(parseDouble(text));
}

} // namespace orv
