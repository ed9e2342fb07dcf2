#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/PrintWriter.h"
#include "orv/io/StringWriter.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io::test {
namespace {

using namespace std::string_literals;
using text::charset::InvalidCharacterException;

enum Direction { BOTH, READ, WRITTEN };

struct Row {
    const char16_t* encoding;
    std::u16string text;
    std::string bytes;
    Direction direction = BOTH;
};

const Row ROWS[] = {
    {u"UTF-8", u"a\u00E9\u20AC\U00010000z", "a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80z"},
    {u"UTF-8", u"\U00010000\U0001F600\U0001F600",
     "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80"},
    {u"UTF-8", u"12345\U0001F600", "12345\xF0\x9F\x98\x80"},
    {u"UTF-8", u"1\xDC00", "1\xED\xB0\x80", WRITTEN}, // a trailing half by itself
    {u"UTF-8", u"a\uFFFD\uFFFD\uFFFDz", "a\xFF\xE2\x82z", READ},
    {u"UTF-8", u"ab\uFFFD\uFFFD", "ab\xE2\x82", READ},       // cut off at the end
    {u"UTF-8", u"\uFFFD\uFFFD\uFFFD", "\xF0\x9F\x98", READ}, // as well
    {u"UTF-8", u"\uFFFDx", "\xF4\x90\x80\x80x", READ},
    {u"UTF-16LE", u"a\U00010000", "a\0\x00\xD8\x00\xDC"s},
    {u"UTF-16BE", u"a\U00010000", "\0a\xD8\x00\xDC\x00"s},
    {u"UTF-16BE", u"a\uFFFD", "\0a\0"s, READ},
    {u"UTF-32LE", u"a\U00010000b", "a\0\0\0\0\0\1\0b\0\0\0"s, WRITTEN},
    {u"CP1252", u"\u20ACuro", "\x80uro"},
    {u"CP1252", u"\u20ACuro 12345678\U0001F600\U0001F600!", "\x80uro 12345678\?\?!", WRITTEN},
    {u"ASCII", u"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600", "?????", WRITTEN},
    {u"AMP-7", u"a&\U0001F600\u2019\"z", "a&AMP;&_1F600;&_2019;\"z"},
    {u"AMP-7", u"\U0001F600\U0001F601", "&_1F600;&_1F601;"},
    {u"AMP-7", u"a\"\uFFFD\uFFFDxyz", "a&QUOT;&xyz", READ},
    {u"AMP-7", u"cut \uFFFD_1F", "cut &_1F", READ},
};

TEST(InputStreamReader, givesTheSameTextHoweverItIsSplit)
{
    for (const Row& row : ROWS) {
        if (row.direction == WRITTEN) continue;
        for (std::size_t piece = 1; piece <= row.bytes.size(); ++piece) {
            for (const std::int32_t size : {1, 7, 8, 9, 64}) {
                for (const std::int32_t n : {1, 2, 3, 5, 100}) {
                    SCOPED_TRACE(testing::Message() << orv::test::readable(row.text) << " by "
                                                    << piece << ' ' << size << ' ' << n);
                    const auto bytes = makeReference<PieceStream>(row.bytes, piece);
                    InputStreamReader in(bytes.get(), row.encoding, size);
                    ASSERT_EQ(readAll(in, n), row.text);
                    EXPECT_EQ(in.read(), -1);
                }
            }
        }
    }
}

TEST(OutputStreamWriter, writesTheSameBytesHoweverTheTextIsSplit)
{
    for (const Row& row : ROWS) {
        if (row.direction == READ) continue;
        const auto length = static_cast<std::int32_t>(row.text.size());
        for (std::int32_t size = 0; size < 20; ++size) {
            for (std::int32_t piece = 1; piece <= length; ++piece) {
                SCOPED_TRACE(testing::Message()
                             << orv::test::readable(row.text) << " by " << piece << ' ' << size);
                const auto bytes = makeReference<RecordingStream>();
                OutputStreamWriter out(bytes.get(), row.encoding, size);
                for (std::int32_t at = 0; at < length; at += piece) {
                    out.write(row.text.data() + at, std::min(piece, length - at));
                }
                out.flush();
                ASSERT_EQ(bytes->content, row.bytes);
                EXPECT_EQ(bytes->flushes, 1);
            }
        }
    }
}

TEST(InputStreamReader, meetsABadSequenceAgainAndAgain)
{
    // It stands right behind a pair, of which each read takes one half.
    const auto bytes = makeReference<PieceStream>("\xF0\x90\x80\x80\xED\xA0\x80");
    InputStreamReader in(bytes.get(), u"UTF-8", 64);
    EXPECT_EQ(in.read(), 0xD800);
    EXPECT_EQ(in.read(), 0xDC00);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { in.read(); }),
                  u"Invalid UTF-8 sequence (decoded chars in surrogate range)");
    }
}

TEST(OutputStreamWriter, waitsForTheOtherHalfOfAPairUntilFlushed)
{
    for (const char16_t* encoding : {u"UTF-8", u"UTF-32BE", u"CP1252", u"AMP-7"}) {
        SCOPED_TRACE(String(encoding).getBytes());
        const auto bytes = makeReference<RecordingStream>();
        OutputStreamWriter out(bytes.get(), encoding, 6);
        out.write(u"abc\xD83D", 4);
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { out.flush(); }),
                  u"leading surrogate without trailing");
        EXPECT_EQ(thrownBy<InvalidCharacterException>([&] { out.write(u"x"); }),
                  u"leading surrogate without trailing");
        out.write(u'\xDE00');
        EXPECT_NO_THROW(out.flush());
        EXPECT_EQ(bytes->flushes, 1);
    }
}

TEST(PrintWriter, printsEachTypeAsText)
{
    const auto text = makeReference<StringWriter>(100);
    PrintWriter out(text.get(), false);
    out.print(String(u"s"));
    out.print("\u00E9");
    out.print(u"w");
    out.print(2.5);
    out.print(0.1f);
    out.print(-7);
    out.print(u'c');
    out.print(true);
    out.println(1e6);
    out.println(false);
    EXPECT_EQ(text->toString(), u"s\u00E9w2.50.1-7ctrue1e+06\nfalse\n");
}

} // namespace
} // namespace orv::io::test
