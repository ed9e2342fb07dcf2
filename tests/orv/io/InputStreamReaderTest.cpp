#include "orv/io/InputStreamReader.h"

#include "orv/io/BufferedReader.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using namespace std::string_literals;
using test::PieceStream;
using test::readAll;
using test::thrownBy;
using text::charset::InvalidCharacterException;

struct Row {
    const char16_t* encoding;
    std::string bytes;
    std::u16string text;
};

const Row ROWS[] = {
    {u"UTF-8", "a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80z", u"a\u00E9\u20AC\U00010000z"},
    {u"UTF-8", "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80",
     u"\U00010000\U0001F600\U0001F600"},
    {u"UTF-8", "a\xFF\xE2\x82z", u"a\uFFFD\uFFFD\uFFFDz"},
    {u"UTF-8", "ab\xE2\x82", u"ab\uFFFD\uFFFD"},       // cut off at the end
    {u"UTF-8", "\xF0\x9F\x98", u"\uFFFD\uFFFD\uFFFD"}, // as well
    {u"UTF-8", "\xF4\x90\x80\x80x", u"\uFFFDx"},
    {u"UTF-16LE", "a\0\x00\xD8\x00\xDC"s, u"a\U00010000"},
    {u"UTF-16BE", "\0a\0"s, u"a\uFFFD"},
    {u"CP1252", "\x80uro", u"\u20ACuro"},
    {u"AMP-7", "a&AMP;&_1F600;&_2019;&QUOT;z", u"a&\U0001F600\u2019\"z"},
    {u"AMP-7", "a&xyz", u"a\uFFFD\uFFFDxyz"},
    {u"AMP-7", "cut &_1F", u"cut \uFFFD_1F"},
};

TEST(InputStreamReader, givesTheSameTextHoweverItIsSplit)
{
    for (const Row& row : ROWS) {
        for (std::size_t piece = 1; piece <= row.bytes.size(); ++piece) {
            for (const std::int32_t size : {1, 7, 8, 9, 64}) {
                for (const std::int32_t n : {1, 2, 3, 5, 100}) {
                    SCOPED_TRACE(orv::test::readable(row.text) + " in pieces of " +
                                 std::to_string(piece) + ", buffer " + std::to_string(size) +
                                 ", reads of " + std::to_string(n));
                    const auto bytes = makeReference<PieceStream>(row.bytes, piece);
                    InputStreamReader in(bytes.get(), row.encoding, size);
                    ASSERT_EQ(readAll(in, n), row.text);
                    EXPECT_EQ(in.read(), -1);
                }
            }
        }
    }
}

TEST(InputStreamReader, meetsABadSequenceAgainAndAgain)
{
    const auto bytes = makeReference<PieceStream>("ab\xED\xA0\x80");
    InputStreamReader in(bytes.get(), u"UTF-8", 64);
    EXPECT_EQ(in.read(), 'a');
    EXPECT_EQ(in.read(), 'b');
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { in.read(); }),
                  u"Invalid UTF-8 sequence (decoded chars in surrogate range)");
    }
}

TEST(InputStreamReader, givesAllUnitsBeforeABadSequenceToASmallRead)
{
    // The bad sequence stands right behind a pair that has room for one half only.
    const auto bytes = makeReference<PieceStream>("\xF0\x90\x80\x80\xED\xA0\x80");
    InputStreamReader in(bytes.get(), u"UTF-8", 64);
    EXPECT_EQ(in.read(), 0xD800);
    EXPECT_EQ(in.read(), 0xDC00);
    EXPECT_THROW(in.read(), InvalidCharacterException);
}

} // namespace
} // namespace orv::io
