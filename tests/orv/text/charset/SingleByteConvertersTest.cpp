#include "orv/text/charset/SingleByteConverters.h"
#include "orv/text/charset/CodePageConverters.h"

#include "orv/text/charset/CharsetExceptions.h"

#include "fuzz/judges/SlowConverters.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::text::charset {
namespace {

std::u16string decoded(ByteToCharConverter& decoder, const std::string& bytes)
{
    char16_t out[16];
    std::int32_t from = 0, to = 0;
    decoder.convert(reinterpret_cast<const signed char*>(bytes.data()), &from,
                    static_cast<std::int32_t>(bytes.size()), out, &to, 16);
    return {out, static_cast<std::size_t>(to)};
}

std::string encoded(CharToByteConverter& encoder, const std::u16string& units)
{
    signed char out[16];
    std::int32_t from = 0, to = 0;
    encoder.convert(units.data(), &from, static_cast<std::int32_t>(units.size()), out, &to, 16);
    return {reinterpret_cast<char*>(out), static_cast<std::size_t>(to)};
}

TEST(CTBSingleByte, forgetsThePairThatFindsNoRoom)
{
    CTBISO8859_1 encoder;
    const char16_t units[] = u"\U0001F600";
    signed char out[4];
    std::int32_t from = 0, to = 0;
    EXPECT_EQ(encoder.convert(units, &from, 2, out, &to, 0), 0);
    EXPECT_EQ(from, 1);
    EXPECT_THROW(encoder.convert(units, &from, 2, out, &to, 4), InvalidCharacterException);
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
            EXPECT_EQ(encoded(page.encoder, {*unit}), byte) << i;
        }
        EXPECT_EQ(encoded(page.encoder, u"\u2191\uFFFD\uFFFF\uE000"), "????");
    }
}

} // namespace
} // namespace orv::text::charset
