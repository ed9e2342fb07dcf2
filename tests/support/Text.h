#pragma once

#include "orv/String.h"

#include <ostream>
#include <string>
#include <string_view>

/// \file
/// Text in failure messages. Include it wherever a test compares Strings, and GoogleTest prints
/// them as UTF-8 in quotes instead of as raw bytes; units outside ASCII that form no character
/// come as \uXXXX.
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

namespace internal {

inline void appendEscaped(std::string& out, char16_t unit)
{
    constexpr std::string_view digits = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        out += digits[static_cast<std::size_t>(unit >> shift) & 0xF];
    }
}

inline void appendUtf8(std::string& out, char32_t character)
{
    const auto tail = [&](int shift) {
        out += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    };
    if (character < 0x800) {
        out += static_cast<char>(0xC0 | (character >> 6));
    } else if (character < 0x10000) {
        out += static_cast<char>(0xE0 | (character >> 12));
        tail(6);
    } else {
        out += static_cast<char>(0xF0 | (character >> 18));
        tail(12);
        tail(6);
    }
    tail(0);
}

} // namespace internal

/// `text` as UTF-8, with control units and lone surrogates as \uXXXX.
inline std::string readable(std::u16string_view text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        const bool leads =
            (unit & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
        if (leads) {
            internal::appendUtf8(out, 0x10000 + ((unit & 0x3FFu) << 10) + (text[++i] & 0x3FFu));
        } else if (unit < 0x20 || unit == 0x7F || (unit & 0xF800) == 0xD800) {
            internal::appendEscaped(out, unit);
        } else if (unit < 0x80) {
            out += static_cast<char>(unit);
        } else {
            internal::appendUtf8(out, unit);
        }
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
