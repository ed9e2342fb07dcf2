#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/PrintWriter.h"
#include "orv/io/StringWriter.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io::test {
namespace {

using namespace std::string_literals;

enum Direction { BOTH, READ, WRITTEN };

struct Row {
    const char16_t* encoding;
    std::u16string text;
    std::string bytes;
    Direction direction = BOTH;
};

const Row ROWS[] = {
    {u"UTF-8", u"a\u00E9\u20AC\U00010000\U0001F600z\U0001F600",
     "a\xC3\xA9\xE2\x82\xAC\xF0\x90\x80\x80\xF0\x9F\x98\x80z\xF0\x9F\x98\x80"},
    {u"UTF-8", u"a\uFFFD\uFFFD\uFFFDz\uFFFDx", "a\xFF\xE2\x82z\xF4\x90\x80\x80x", READ},
    {u"UTF-8", u"ab\uFFFD\uFFFD\uFFFD", "ab\xF0\x9F\x98", READ}, // cut off at the end
    {u"UTF-16LE", u"a\U00010000", "a\0\x00\xD8\x00\xDC"s},
    {u"UTF-16BE", u"a\U00010000\uFFFD", "\0a\xD8\x00\xDC\x00\0"s, READ},
    {u"UTF-32LE", u"a\U00010000b", "a\0\0\0\0\0\1\0b\0\0\0"s, WRITTEN},
    {u"CP1252", u"\u20ACuro 12345678\U0001F600\U0001F600!", "\x80uro 12345678\?\?!", WRITTEN},
    {u"AMP-7", u"a&\U0001F600\u2019\U0001F601\"z", "a&AMP;&_1F600;&_2019;&_1F601;\"z"},
    {u"AMP-7", u"a\"\uFFFD\uFFFDxyz \uFFFD_1F", "a&QUOT;&xyz &_1F", READ},
};

std::u16string readBy(const Row& row, std::size_t piece, std::int32_t size, std::int32_t n)
{
    InputStreamReader in(makeReference<PieceStream>(row.bytes, piece).get(), row.encoding, size);
    std::u16string all;
    char16_t units[100];
    for (std::int32_t got; (got = in.read(units, n)) >= 0;) {
        all.append(units, static_cast<std::size_t>(got));
    }
    EXPECT_EQ(in.read(), -1);
    return all;
}

std::string writtenBy(const Row& row, std::size_t piece, std::int32_t size)
{
    const auto bytes = makeReference<RecordingStream>();
    OutputStreamWriter out(bytes.get(), row.encoding, size);
    for (std::size_t at = 0; at < row.text.size(); at += piece) {
        const std::size_t n = std::min(piece, row.text.size() - at);
        out.write(row.text.data() + at, static_cast<std::int32_t>(n));
    }
    out.flush();
    EXPECT_EQ(bytes->flushes, 1);
    return bytes->content;
}

TEST(TextStreams, carryTheSameHoweverItIsSplit)
{
    for (const Row& row : ROWS) {
        for (std::size_t piece = 1; piece <= row.bytes.size(); ++piece) {
            for (std::int32_t size = 0; size < 20; ++size) {
                SCOPED_TRACE(testing::Message()
                             << orv::test::readable(row.text) << " by " << piece << ' ' << size);
                if (row.direction != READ) {
                    ASSERT_EQ(writtenBy(row, piece, size), row.bytes);
                }
                for (const std::int32_t n : {1, 2, 3, 5, 100}) {
                    if (row.direction == WRITTEN) break;
                    ASSERT_EQ(readBy(row, piece, size, n), row.text) << n << " at a time";
                }
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
        EXPECT_THROW(in.read(), text::charset::InvalidCharacterException);
    }
}

TEST(OutputStreamWriter, waitsForTheOtherHalfOfAPairUntilFlushed)
{
    const Refusal lonely(E_INVALID_CHARACTER, "leading surrogate without trailing");
    for (const char16_t* encoding : {u"UTF-8", u"UTF-32BE", u"CP1252", u"AMP-7"}) {
        SCOPED_TRACE(String(encoding).getBytes());
        const auto bytes = makeReference<RecordingStream>();
        OutputStreamWriter out(bytes.get(), encoding, 6);
        out.write(u"abc\xD83D", 4);
        EXPECT_EQ(refusalOf([&] { out.flush(); }), lonely);
        EXPECT_EQ(refusalOf([&] { out.write(u"x"); }), lonely);
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
