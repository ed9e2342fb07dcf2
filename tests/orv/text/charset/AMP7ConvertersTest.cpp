#include "orv/text/charset/AMP7Converters.h"

#include "orv/text/charset/CharsetExceptions.h"

#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::text::charset {
namespace {

struct Row {
    std::string_view bytes;
    std::u16string_view units;
    std::int32_t consumed = -1; ///< -1: all
};

TEST(BTCAMP7, readsItsForms)
{
    using namespace std::string_view_literals;
    for (const Row& row : {
             Row{"a&AMP;b", u"a&b"},
             {"&APOS;&QUOT;", u"'\""},
             {"&_;", u"\0"sv},
             {"&_e9;&_E9;", u"\u00E9\u00E9"},
             {"&_10000;", u"\U00010000"},
             {"&xyz", u"\uFFFD\uFFFDxyz"},
             {"&amp;", u"\uFFFD\uFFFD"
                       u"amp;"},
             {"&AMPx;", u"\uFFFD\uFFFD"
                        u"AMPx;"},
             {"&AP;", u"\uFFFD\uFFFD"
                      u"AP;"},
             {"&_123456;", u"\uFFFD\uFFFD_123456;"},
             {"&_FFFD;", u"\uFFFD\uFFFD_FFFD;"},
             {"\x80z", u"\uFFFD\uFFFDz"},
             {"ab&", u"ab", 2},
             {"ab&A", u"ab", 2},
             {"ab&_", u"ab", 2},
             {"ab&_12345", u"ab", 2},
         }) {
        BTCAMP7 decoder;
        char16_t out[32];
        std::int32_t from = 0, to = 0;
        const auto size = static_cast<std::int32_t>(row.bytes.size());
        decoder.convert(reinterpret_cast<const signed char*>(row.bytes.data()), &from, size, out,
                        &to, 32);
        EXPECT_EQ(std::u16string_view(out, static_cast<std::size_t>(to)), row.units) << row.bytes;
        EXPECT_EQ(from, row.consumed == -1 ? size : row.consumed) << row.bytes;
        EXPECT_EQ(decoder.flush(out, &to, 32), 0);
    }
}

TEST(BTCAMP7, refusesSurrogatesAndWithoutSubstitutionAllThatIsMalformed)
{
    BTCAMP7 decoder;
    char16_t out[8];
    std::int32_t from = 1, to = 0;
    const signed char surrogate[] = {'x', 'y', '&', '_', 'D', '8', '0', '0', ';'};
    try {
        decoder.convert(surrogate, &from, 9, out, &to, 8);
        FAIL();
    } catch (const InvalidCharacterException& exception) {
        EXPECT_EQ(exception.getDescription(),
                  u"Invalid AMP-7 sequence (decoded chars in surrogate range)");
    }
    EXPECT_EQ(from, 2);
    EXPECT_EQ(to, 1);

    decoder.setSubstitutionMode(false);
    const signed char malformed[] = {'&', 'a'};
    from = to = 0;
    EXPECT_THROW(decoder.convert(malformed, &from, 2, out, &to, 8), UnmappableCharacterException);
    EXPECT_EQ(from, 0);
    EXPECT_EQ(to, 0);
}

TEST(CTBAMP7, writesItsForms)
{
    for (const Row& row : {
             Row{"&AMP;\"'", u"&\"'"},
             {"&_E9;", u"\u00E9"},
             {"&_1;\t\n\r&_7F;~", u"\x01\t\n\r\x7F~"},
             {"&_10000;", u"\U00010000"},
             {"?", u"\U000FFFFF"},
             {"&_DC00;", u"\xDC00"},
             {"a", u"a\xD800", 1},
         }) {
        CTBAMP7 encoder;
        signed char out[32];
        std::int32_t from = 0, to = 0;
        const auto size = static_cast<std::int32_t>(row.units.size());
        encoder.convert(row.units.data(), &from, size, out, &to, 32);
        EXPECT_EQ(std::string_view(reinterpret_cast<char*>(out), static_cast<std::size_t>(to)),
                  row.bytes);
        EXPECT_EQ(from, row.consumed == -1 ? size : row.consumed) << row.bytes;
        EXPECT_EQ(encoder.flush(out, &to, 32), 0);
    }
}

} // namespace
} // namespace orv::text::charset
