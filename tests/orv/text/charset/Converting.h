#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/CharsetExceptions.h"

#include "fuzz/judges/SlowConverters.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace orv::text::charset {

inline const signed char* bytesOf(std::string_view text)
{
    return reinterpret_cast<const signed char*>(text.data());
}

/// What one convert() with ample room, or with `room`, makes of the bytes from `from` on.
inline std::u16string decoded(ByteToCharConverter& decoder, std::string_view bytes,
                              std::int32_t& from, std::int32_t room = 512)
{
    std::u16string out(static_cast<std::size_t>(room), u'\0');
    std::int32_t to = 0;
    decoder.convert(bytesOf(bytes), &from, static_cast<std::int32_t>(bytes.size()), out.data(), &to,
                    room);
    out.resize(static_cast<std::size_t>(to));
    return out;
}

inline std::u16string decoded(ByteToCharConverter& decoder, std::string_view bytes)
{
    std::int32_t from = 0;
    return decoded(decoder, bytes, from, static_cast<std::int32_t>(4 * bytes.size() + 4));
}

inline std::string encoded(CharToByteConverter& encoder, std::u16string_view units,
                           std::int32_t& from, std::int32_t room = 512)
{
    std::string out(static_cast<std::size_t>(room), '\0');
    std::int32_t to = 0;
    encoder.convert(units.data(), &from, static_cast<std::int32_t>(units.size()),
                    reinterpret_cast<signed char*>(out.data()), &to, room);
    out.resize(static_cast<std::size_t>(to));
    return out;
}

inline std::string encoded(CharToByteConverter& encoder, std::u16string_view units)
{
    std::int32_t from = 0;
    return encoded(encoder, units, from, static_cast<std::int32_t>(8 * units.size() + 8));
}

} // namespace orv::text::charset
