#include "orv/text/charset/AMP7Converters.h"

#include "tests/orv/text/charset/Converting.h"

namespace orv::text::charset {
namespace {

TEST(BTCAMP7, readsItsForms)
{
    using namespace std::string_view_literals;
    struct Row {
        std::string_view bytes;
        std::u16string_view units;
        std::int32_t consumed = static_cast<std::int32_t>(bytes.size());
    };
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
        std::int32_t from = 0;
        EXPECT_EQ(decoded(decoder, row.bytes, from), row.units) << row.bytes;
        EXPECT_EQ(from, row.consumed) << row.bytes;
    }
}

TEST(BTCAMP7, refusesSurrogatesAndWithoutSubstitutionAllThatIsMalformed)
{
    BTCAMP7 decoder;
    std::int32_t from = 1;
    try {
        decoded(decoder, "xy&_D800;", from);
        FAIL();
    } catch (const InvalidCharacterException& exception) {
        EXPECT_EQ(exception.getDescription(),
                  u"Invalid AMP-7 sequence (decoded chars in surrogate range)");
    }
    EXPECT_EQ(from, 2);
    decoder.setSubstitutionMode(false);
    EXPECT_THROW(decoded(decoder, "&a", from = 0), UnmappableCharacterException);
    EXPECT_EQ(from, 0);
}

TEST(CTBAMP7, writesItsForms)
{
    struct Row {
        std::string_view bytes;
        std::u16string_view units;
        std::int32_t consumed = static_cast<std::int32_t>(units.size());
    };
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
        std::int32_t from = 0;
        EXPECT_EQ(encoded(encoder, row.units, from), row.bytes);
        EXPECT_EQ(from, row.consumed) << row.bytes;
    }
}

} // namespace
} // namespace orv::text::charset
