#include "orv/String.h"

#include "orv/internal/AnsiBytes.h"
#include "orv/text/charset/CharsetExceptions.h"

#include "tests/support/ScopedVariable.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace orv {
namespace {

using namespace std::string_view_literals;
using test::units;

TEST(StringConversion, decodesByTheNamedEncoding)
{
    using Row = std::tuple<std::string_view, const char16_t*, std::u16string_view>;
    for (const auto& [bytes, encoding, expected] : {
             Row{"Gr\xC3\xBC\xC3\x9F"
                 "e",
                 u"UTF-8", u"Grüße"},
             {"Gr\xFC\xDF"
              "e",
              u"CP1252", u"Grüße"},
             {"a\x80", u"ASCII", u"a\uFFFD"},
             {"A\0\x20\xAC"sv, u"UTF-16BE", u"\u4100\u20AC"},
             {"a\0b"sv, u"UTF-8", u"a\0b"sv},
             {"\xC3", u"UTF-8", u""}, // a cut sequence is not text
         }) {
        const auto length = static_cast<std::int32_t>(bytes.size());
        String text(bytes.data(), length, encoding, 0);
        EXPECT_EQ(units(text), expected) << bytes;
        EXPECT_EQ(text.getData()[text.getLength()], u'\0');

        text.setTo(reinterpret_cast<const unsigned char*>(bytes.data()), length, encoding);
        EXPECT_EQ(units(text), expected) << bytes;
        EXPECT_EQ(units(String::CORVString(bytes.data(), length, encoding, 40)), expected);
    }
}

TEST(StringConversion, takesTheDefaultEncodingWhereNoneIsNamed)
{
    for (const auto& [encoding, expected] : {std::pair{"UTF-8", u"ä"},
                                             {"CP1252", u"Ã¤"},
                                             {"CP437", u"├ñ"},
                                             {"ASCII", u"\uFFFD\uFFFD"},
                                             {"no-encoding", u""}}) {
        const test::ScopedVariable variable("ORV_ENCODING", encoding);
        if (*expected == 0) {
            EXPECT_THROW(String("ä"), text::charset::UnknownEncodingException);
            continue;
        }
        EXPECT_EQ(String("ä"), expected);
        String text;
        text = "ä";
        EXPECT_EQ(text, expected);
        EXPECT_EQ(text.getBytes(), std::string_view(*encoding == 'A' ? "??" : "ä"));
    }
}

TEST(StringConversion, encodesIntoABuffer)
{
    const String text(u"aä€");
    char out[10];
    EXPECT_EQ(text.getBytes(out, 10, u"UTF-8"), 7);
    EXPECT_STREQ(out, "aä€");
    EXPECT_EQ(text.getBytes(out, 6, u"UTF-8"), 6); // no room for the terminator
    EXPECT_EQ(text.getBytes(out, 5, u"UTF-8"), 4); // "€" does not fit, the terminator does
    EXPECT_STREQ(out, "aä");
    EXPECT_EQ(text.getBytes(out, 0, u"UTF-8"), 0);
    EXPECT_THROW(String(u"a\xD800").getBytes(out, 10, u"UTF-8"),
                 text::charset::InvalidCharacterException);

    util::RWByteBuffer buffer;
    text.getBytes(&buffer, u"CP1252");
    EXPECT_EQ(buffer.getLength(), 4);
    EXPECT_STREQ(reinterpret_cast<const char*>(buffer.getData()), "a\xE4\x80");
    EXPECT_THROW(String(u"\xDC00").getBytes(&buffer, u"CP1252"),
                 text::charset::InvalidCharacterException);
    EXPECT_EQ(buffer.getLength(), 4);
}

TEST(StringConversion, keepsTheBytesUntilTheNextWriteOrAnotherEncoding)
{
    String text(u"ä");
    const char* const bytes = text.getBytes(u"utf-8");
    EXPECT_STREQ(bytes, "ä");
    EXPECT_EQ(text.getBytes(u"UTF-8"), bytes);
    EXPECT_EQ(text.getBytesReadLock(u"Utf-8"), bytes);
    text.releaseReadLock();
    EXPECT_STREQ(text.getBytes(u"CP1252"), "\xE4");
    EXPECT_STREQ(text.getBytes(u"UTF-8"), "ä");
    text.append(u"€");
    EXPECT_STREQ(text.getBytes(u"UTF-8"), "ä€");

    text.append(u"\xD800");
    EXPECT_THROW(text.getBytes(u"UTF-8"), text::charset::InvalidCharacterException);
}

} // namespace
} // namespace orv
