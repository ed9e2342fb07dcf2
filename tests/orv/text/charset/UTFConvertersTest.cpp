#include "orv/text/charset/UTF16Converters.h"
#include "orv/text/charset/UTF32Converters.h"
#include "orv/text/charset/UTF8Converters.h"

#include "orv/text/charset/internal/Utf8Kernels.h"

#include "fuzz/ConverterFuzz.h"
#include "tests/orv/text/charset/Converting.h"

#include <random>

namespace orv::text::charset {
namespace {

using namespace std::string_view_literals;

TEST(BTCUTF8, readsWithTolerance)
{
    using Row = std::tuple<std::string_view, std::u16string_view, std::int32_t>;
    BTCUTF8 decoder;
    for (const auto& [bytes, units, consumed] : {
             Row{"A", u"A", 1},
             {"\xF0\x90\x80\x80", u"\U00010000", 4},
             {"\xC0\x80", u"\uFFFD\uFFFD", 2},
             {"\xE2\x82", u"", 0},
             {"\xE2\x41", u"", 0}, // waits although the second byte is wrong already
             {"\xE2\x41\x42",
              u"\uFFFD"
              u"AB",
              3},
             {"\xF5", u"\uFFFD", 1},
             {"\xE0\x80\x80", u"\0"sv, 3},
             {"\xF0\x80\x80\x80", u"\0"sv, 4},
             {"\xF0\xB0\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", 4},
             {"\xF2\xAF\xBF\xBF", u"\U000AFFFF", 4},
             {"\xF4\x90\x80\x80", u"\uFFFD", 4},
             {"\xEF\xBB\xBF", u"\uFEFF", 3},
         }) {
        std::int32_t from = 0;
        EXPECT_EQ(decoded(decoder, bytes, from), units) << testing::PrintToString(bytes);
        EXPECT_EQ(from, consumed) << testing::PrintToString(bytes);
    }
}

void compareAlone(BTCUTF8& decoder, std::string_view bytes)
{
    const std::size_t room = bytes.size() + 4;
    const auto expected = test::slowDecode(test::slowUtf8, bytes, room, {});
    std::u16string out;
    std::int32_t from = 0;
    ASSERT_EQ(fuzz::convertOnce(decoder, bytes, from, bytes.size(), out, room), expected.end);
    ASSERT_EQ(static_cast<std::size_t>(from), expected.consumed);
    ASSERT_EQ(out, expected.out);
}

// Behind enough ASCII and between enough of it that each sequence meets the fast ways at every
// offset within a block.
void compareInContext(BTCUTF8& decoder, std::string_view sequence, std::size_t before)
{
    static const std::string filling(80, 'x');
    compareAlone(decoder, filling.substr(0, before).append(sequence).append(filling));
}

/// Bytes on both sides of every bound that the rules of UTF-8 know.
constexpr unsigned char bounds[] = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                    0xAF, 0xB0, 0xBF, 0xC0, 0xC2, 0xE1, 0xF0, 0xFF};

TEST(BTCUTF8, agreesOnSequencesOfTwoAndThreeBytes)
{
    BTCUTF8 decoder;
    for (unsigned i = 0; i < 0x10000; ++i) {
        char bytes[] = {static_cast<char>(i >> 8), static_cast<char>(i & 0xFF), 0};
        ASSERT_NO_FATAL_FAILURE(compareAlone(decoder, {bytes, 2})) << std::hex << i;
        const unsigned first = i >> 8;
        if (first == 0xE0 || first == 0xE1 || first == 0xED || first == 0xEF) {
            for (unsigned third = 0; third < 0x100; ++third) {
                bytes[2] = static_cast<char>(third);
                ASSERT_NO_FATAL_FAILURE(compareAlone(decoder, {bytes, 3})) << std::hex << i;
            }
        } else if (first >= 0xE0) {
            for (const unsigned char third : bounds) {
                bytes[2] = static_cast<char>(third);
                ASSERT_NO_FATAL_FAILURE(compareAlone(decoder, {bytes, 3})) << std::hex << i;
            }
        }
    }
}

TEST(BTCUTF8, agreesOnSequencesAtEveryPlaceWithinABlock)
{
    BTCUTF8 decoder;
    std::size_t place = 0;
    for (unsigned first = 0xC0; first < 0x100; ++first) {
        for (const unsigned char second : bounds) {
            for (const int third : {0x41, 0x80, 0xBF}) {
                for (const int fourth : {0x80, 0xC2, 0xED}) {
                    const char bytes[] = {static_cast<char>(first), static_cast<char>(second),
                                          static_cast<char>(third), static_cast<char>(fourth)};
                    ASSERT_NO_FATAL_FAILURE(compareAlone(decoder, {bytes, 4}));
                    place = (place + 1) % 37;
                    ASSERT_NO_FATAL_FAILURE(compareInContext(decoder, {bytes, 4}, place));
                }
            }
        }
    }
}

TEST(UTFConverters, roundTripAllCodePointsButThoseThatUtf8ReadsAsMalformed)
{
    CTBUTF8 to8;
    BTCUTF8 from8;
    CTBUTF32LE to32;
    BTCUTF32LE from32;
    CTBUTF16BE to16;
    BTCUTF16BE from16;
    for (std::uint32_t first = 0; first < 0x110000; first += 0x400) {
        std::u16string units;
        if (first < 0xD800 || first > 0xDFFF) {
            for (std::uint32_t code = first; code < first + 0x400; ++code) {
                units += test::unitsOf(code);
            }
        }
        ASSERT_EQ(decoded(from32, encoded(to32, units)), units) << first;
        ASSERT_EQ(decoded(from16, encoded(to16, units)), units) << first;
        const std::string bytes = encoded(to8, units);
        const bool readable = first < 0x10000 || (first >> 16) % 4 != 3;
        ASSERT_EQ(decoded(from8, bytes) == units, readable) << first;
        char16_t pending = 0;
        ASSERT_EQ(bytes, test::slowEncode(test::slowPaired<test::printUtf8>, units, bytes.size(),
                                          {}, pending)
                             .out);
    }
}

TEST(Utf8Kernels, forAnyProcessorTakeAllThatIsInOrder)
{
    std::mt19937 generator(3);
    const auto random = [&generator] { return static_cast<std::uint32_t>(generator()); };
    for (int round = 0; round < 1000; ++round) {
        std::u16string units;
        for (unsigned pieces = random() % 12; pieces > 0; --pieces) {
            constexpr std::uint32_t ranges[] = {0x80, 0x800, 0xD800, 0x30000};
            const std::uint32_t bound = ranges[random() % 4];
            for (unsigned n = random() % 20; n > 0; --n) {
                std::uint32_t code = random() % bound;
                if (test::between(code, 0xD800, 0xDFFF)) code = 'x';
                units += test::unitsOf(code);
            }
        }
        char16_t pending = 0;
        const std::string bytes =
            test::slowEncode(test::slowPaired<test::printUtf8>, units, 9999, {}, pending).out;
        const std::string_view disorders[] = {"",
                                              "\xED\xBF\xBF"
                                              "zz",
                                              "\xC3", "\xF0\xB0\x80\x80"};
        const std::string input = bytes + std::string(disorders[round % 4]);

        std::u16string out(units.size() + 8, u'\0');
        const signed char* const in = bytesOf(input);
        const auto decoding = internal::decodeUtf8Portably(in, in + input.size(), out.data(),
                                                           out.data() + out.size());
        ASSERT_EQ(decoding.in - in, static_cast<std::ptrdiff_t>(bytes.size()));
        ASSERT_EQ(out.substr(0, static_cast<std::size_t>(decoding.out - out.data())), units);

        std::u16string odd = units + (round % 2 == 0 ? u"\xDC00z" : u"\xD800");
        std::string back(bytes.size() + 8, '\0');
        auto* const to = reinterpret_cast<signed char*>(back.data());
        const auto encoding =
            internal::encodeUtf8Portably(odd.data(), odd.data() + odd.size(), to, to + back.size());
        ASSERT_EQ(encoding.in - odd.data(), static_cast<std::ptrdiff_t>(units.size()));
        ASSERT_EQ(back.substr(0, static_cast<std::size_t>(encoding.out - to)), bytes);
    }
}

TEST(CTBUTF8, losesTheLeadingHalfOfAPairWithoutRoom)
{
    CTBUTF8 encoder;
    std::int32_t from = 0;
    EXPECT_EQ(encoded(encoder, u"\U00010000", from, 3), "");
    EXPECT_EQ(from, 1);
    EXPECT_EQ(encoded(encoder, u"\U00010000", from), "\xED\xB0\x80");
}

TEST(BTCUTF32, readsABrokenLastWordPastTheEnd)
{
    BTCUTF32LE decoder;
    std::int32_t from = 0;
    EXPECT_EQ(decoded(decoder, "A\0\0\0B"sv, from), u"AB");
    EXPECT_EQ(from, 8);
    EXPECT_EQ(decoded(decoder, "A\0\0\0B"sv, from), u"");
    EXPECT_EQ(from, 8);
}

} // namespace
} // namespace orv::text::charset
