#include "orv/text/charset/SingleByteConverters.h"
#include "orv/text/charset/CodePageConverters.h"

#include "tests/orv/text/charset/Converting.h"

namespace orv::text::charset {
namespace {

TEST(CTBSingleByte, forgetsThePairThatFindsNoRoom)
{
    CTBISO8859_1 encoder;
    std::int32_t from = 0;
    EXPECT_EQ(encoded(encoder, u"\U0001F600", from, 0), "");
    EXPECT_EQ(from, 1);
    EXPECT_THROW(encoded(encoder, u"\U0001F600", from), InvalidCharacterException);
    EXPECT_EQ(from, 1);
}

struct Latin1 : BTCISO8859_1 {
    using BTCISO8859_1::convertByte;
};

TEST(BTCISO8859_1, extendsTheSignInRunsOnly)
{
    Latin1 decoder;
    EXPECT_EQ(decoded(decoder, "a\xE9\x7F"), u"a\uFFE9\u007F");
    EXPECT_EQ(decoder.convertByte(static_cast<signed char>(0xE9)), u'\u00E9');
    CTBISO8859_1 encoder;
    EXPECT_EQ(encoded(encoder, u"\u00E9\u0100"), "\xE9?");
}

TEST(CodePages, mapAllBytesAsPublishedAndBack)
{
    struct Page {
        ByteToCharConverter& decoder;
        CharToByteConverter& encoder;
        std::optional<char16_t> (*unitOf)(unsigned char);
    };
    BTCCP437 from437;
    CTBCP437 to437;
    BTCCP1252 from1252;
    CTBCP1252 to1252;
    for (const Page& page :
         {Page{from437, to437, test::unitOfCp437}, {from1252, to1252, test::unitOfCp1252}}) {
        for (int i = 0; i < 256; ++i) {
            const std::string byte(1, static_cast<char>(i));
            const auto unit = page.unitOf(static_cast<unsigned char>(i));
            EXPECT_EQ(decoded(page.decoder, byte), std::u16string(1, unit.value_or(u'\uFFFD')))
                << i;
            if (!unit) continue;
            EXPECT_EQ(encoded(page.encoder, std::u16string_view(&*unit, 1)), byte) << i;
        }
        EXPECT_EQ(encoded(page.encoder, u"\u2191\uFFFD\uFFFF\uE000"), "????");
    }
}

} // namespace
} // namespace orv::text::charset
