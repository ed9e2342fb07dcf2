#pragma once

#include "orv/String.h"

#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>

/// \file
/// Text in failure messages. Include it wherever a test compares Strings, and GoogleTest prints
/// them in quotes instead of as raw bytes; units outside printable ASCII come as \uXXXX.
///
///     EXPECT_EQ(text, u"abc");
///     EXPECT_EQ(test::units(text), u"a\0b"sv);   // to compare with embedded zero units

namespace orv {

namespace test {

/// The units of `text`, valid until it changes.
inline std::u16string_view units(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

/// A String of the units of `text`, zero units included.
inline String textOf(std::u16string_view text)
{
    return String(text.data(), static_cast<std::int32_t>(text.size()));
}

/// `text` in ASCII, all other units as \uXXXX.
inline std::string readable(std::u16string_view text)
{
    std::string out;
    for (const char16_t unit : text) {
        char escaped[8] = {static_cast<char>(unit)};
        if (unit < 0x20 || unit > 0x7E) {
            std::snprintf(escaped, sizeof escaped, "\\u%04x", unsigned{unit});
        }
        out += escaped;
    }
    return out;
}

} // namespace test

/// Found by GoogleTest.
inline void PrintTo(const String& text, std::ostream* out)
{
    *out << 'u' << '"' << test::readable(test::units(text)) << '"';
}

} // namespace orv
