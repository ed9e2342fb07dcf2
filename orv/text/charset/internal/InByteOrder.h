#pragma once

#include "orv/text/charset/UTFConverters.h"
#include "orv/text/charset/internal/ByteOrder.h"

namespace orv::text::charset {

template <class Converter, std::endian Order>
std::uint16_t InByteOrder<Converter, Order>::convertUTF16(std::uint16_t word)
{
    return internal::ordered<Order>(word);
}

template <class Converter, std::endian Order>
std::uint32_t InByteOrder<Converter, Order>::convertUTF32(std::uint32_t word)
{
    return internal::ordered<Order>(word);
}

} // namespace orv::text::charset
