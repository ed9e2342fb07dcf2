#include "fuzz/ConverterFuzz.h"
#include "orv/Reference.h"
#include "tests/orv/text/charset/Converting.h"
#include "tests/support/Refusals.h"

#include <algorithm>
#include <random>

namespace orv::text::charset {
namespace {

using test::SlowEncoding;

/// What has rules of its own in some encoding, joined by blanks.
constexpr std::string_view specialties =
    " \xED\xA0\x80 \xE0\x80\x80 \xF0\x8D\xA0\x80 \xF4\x90\x80\x80 \xF0\xB0\x80\x80 "
    "\xF4\xAF\xBF\xBF \xF5 \xC0\x80 \xC2 \xE2\x82 &_ &_; &_e9; &_D800; &_FFFD; &_12345; "
    "&_123456; &AM &APOS; &QUOT; &amp; &_FFFFF; ";

/// Random texts in pieces that are likely to matter.
class Texts {
public:
    std::size_t below(std::size_t limit) { return m_random() % limit; }

    std::u16string units()
    {
        std::u16string text;
        for (std::size_t pieces = below(8); pieces > 0; --pieces) {
            const std::size_t kind = below(7);
            for (std::size_t length = 1 + below(below(3) == 0 ? 60 : 4); length > 0; --length) {
                text += test::unitsOf(character(kind));
            }
        }
        return text;
    }

    std::string bytes(const SlowEncoding& encoding)
    {
        std::string text;
        for (std::size_t pieces = below(8); pieces > 0; --pieces) {
            const std::size_t kind = below(9);
            if (kind < 3) {
                for (std::size_t n = 1 + below(6); n > 0; --n)
                    text += static_cast<char>(below(256));
            } else if (kind < 5) {
                const std::size_t start = specialties.find(' ', below(specialties.size() - 9)) + 1;
                text += specialties.substr(start, specialties.find(' ', start) - start);
            } else {
                char16_t pending = 0;
                text += slowEncode(encoding.encoder, units(), 1000, {}, pending).out;
                if (kind == 8) text.resize(below(text.size() + 1));
            }
        }
        return text;
    }

private:
    std::uint32_t character(std::size_t kind)
    {
        constexpr std::uint32_t from[] = {0x20, 0, 0x80, 0x800, 0x10000, 0xD800, 0};
        constexpr std::uint32_t to[] = {0x7F, 0x100, 0x800, 0xD800, 0x110000, 0x10000, 0x3000};
        if (kind > 3 && below(3) == 0) kind = 0;
        return from[kind] + static_cast<std::uint32_t>(below(to[kind] - from[kind]));
    }

    std::mt19937 m_random{7};
};

class EachEncoding : public testing::TestWithParam<std::uint8_t> {};

TEST_P(EachEncoding, isConvertedAsTheSlowConvertersDo)
{
    const SlowEncoding& encoding = test::slowEncodings[GetParam()];
    const Reference decoder(ByteToCharConverter::getConverter(encoding.name));
    const Reference encoder(CharToByteConverter::getConverter(encoding.name));
    EXPECT_EQ(std::u16string_view(decoder->getEncodingName()), encoding.name);
    EXPECT_EQ(std::u16string_view(encoder->getEncodingName()), encoding.name);
    Texts texts;
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        const std::uint32_t random = static_cast<std::uint32_t>(texts.below(1 << 24));
        const std::uint8_t head[] = {GetParam(), static_cast<std::uint8_t>(random >> 16),
                                     static_cast<std::uint8_t>(random >> 8),
                                     static_cast<std::uint8_t>(random)};
        fuzz::Plan plan(head);
        fuzz::check(*decoder, plan, texts.bytes(encoding));
        fuzz::check(*encoder, plan, texts.units());
    }
}

INSTANTIATE_TEST_SUITE_P(, EachEncoding,
                         testing::Range<std::uint8_t>(0, std::size(test::slowEncodings)),
                         [](const auto& row) {
                             std::string name(test::readable(test::slowEncodings[row.param].name));
                             std::erase(name, '-');
                             return name;
                         });

TEST(Converters, tellWhatIsInvalid)
{
    struct Row {
        const char16_t* encoding;
        std::string_view bytes;
        const char* words;
    };
    for (const Row& row :
         {Row{u"UTF-8", "\xED\xA0\x80",
              "Invalid UTF-8 sequence (decoded chars in surrogate range)"},
          {u"UTF-32BE", {"\0\0\xD8\0", 4}, "Illegal UTF-32 char in surrogate range"},
          {u"AMP-7", "&_D800;", "Invalid AMP-7 sequence (decoded chars in surrogate range)"}}) {
        const Reference decoder(ByteToCharConverter::getConverter(row.encoding));
        EXPECT_EQ(test::refusalOf([&] { decoded(*decoder, row.bytes); }),
                  test::Refusal(E_INVALID_CHARACTER, row.words));
    }
    const auto encode = [](std::u16string_view units) {
        const Reference encoder(CharToByteConverter::getConverter(u"CP437"));
        return test::refusalOf([&] { encoded(*encoder, units); }).second;
    };
    EXPECT_EQ(encode(u"\xD800x"), "leading surrogate without trailing");
    EXPECT_EQ(encode(u"\xDC00"), "trailing surrogate without leading");
}

TEST(Converters, endAmp7BeforeTheLastCodePointOfFiveDigits)
{
    const Reference encoder(CharToByteConverter::getConverter(u"AMP-7"));
    EXPECT_EQ(encoded(*encoder, u"\U000FFFFE\U000FFFFF"), "&_FFFFE;?");
    const Reference decoder(ByteToCharConverter::getConverter(u"AMP-7"));
    EXPECT_EQ(decoded(*decoder, "&_FFFFF;"), u"\U000FFFFF");
}

} // namespace
} // namespace orv::text::charset
