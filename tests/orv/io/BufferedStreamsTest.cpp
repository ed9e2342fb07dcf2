#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "tests/orv/io/Streams.h"

#include <vector>

namespace orv::io {
namespace {

using test::PieceReader;
using test::PieceStream;
using test::readOnce;
using test::RecordingStream;

const std::string LETTERS = "abcdefghijklmnopqrstuvwxyz";

TEST(BufferedInputStream, givesSingleBytesWithTheirSign)
{
    BufferedInputStream in(makeReference<PieceStream>("\x80\xFF\xFF").get(), 16);
    EXPECT_EQ(in.read(), -128);
    EXPECT_EQ(in.read(), -1);
    EXPECT_EQ(readOnce(in, 1), "\xFF");
    EXPECT_EQ(readOnce(in, 1), "|-1");
    EXPECT_EQ(in.read(), -1);
}

TEST(BufferedInputStream, returnsToAMarkWithinItsLimit)
{
    struct Row {
        std::int32_t before, limit, after;
        const char* outcome;
    };
    for (const Row& row : {Row{0, 5, 5, "abc"},
                           {3, 10, 20, "mark invalid"}, // read past the limit, refilled
                           {3, 13, 13, "def"},          // not refilled yet
                           {3, 1000, 23, "def"},        // grows
                           {16, 16, 10, "qrs"},
                           {10, -1, 2, "klm"}}) {
        SCOPED_TRACE(row.limit);
        BufferedInputStream in(makeReference<PieceStream>(LETTERS).get(), 16);
        EXPECT_EQ(in.skip(row.before), row.before);
        in.mark(row.limit);
        EXPECT_EQ(in.skip(row.after), row.after);
        try {
            in.reset();
            EXPECT_EQ(readOnce(in, 3), row.outcome);
            in.reset();
            EXPECT_EQ(in.skip(100), 26 - row.before);
        } catch (const IoException& exception) {
            EXPECT_EQ(exception.getDescription(), String(row.outcome));
        }
    }
}

TEST(BufferedOutputStream, passesOnWhatIsFullAndWhatIsLarge)
{
    const auto inner = makeReference<RecordingStream>();
    BufferedOutputStream out(inner.get(), 1); // holds 16
    out.write(LETTERS.data(), 10);
    out.write(LETTERS.data() + 10, 6);
    EXPECT_EQ(inner->content, "");
    out.write(static_cast<signed char>('q'));
    EXPECT_EQ(inner->content, LETTERS.substr(0, 16));
    out.write(LETTERS.data(), 16);
    EXPECT_EQ(inner->content, LETTERS.substr(0, 17) + LETTERS.substr(0, 16));
    EXPECT_EQ(inner->writes, 3);
    out.flush();
}

TEST(BufferedOutputStream, closeDropsWhatIsNotFlushed)
{
    const auto inner = makeReference<RecordingStream>();
    BufferedOutputStream out(inner.get(), 16);
    out.write("abc", 3);
    out.close();
    EXPECT_EQ(inner->content, "");
}

TEST(BufferedReader, givesSingleUnitsWithoutSign)
{
    BufferedReader in(makeReference<PieceReader>(u"\uFFFF\u8000").get(), 16);
    EXPECT_EQ(in.read(), 0xFFFF);
    EXPECT_EQ(in.read(), 0x8000);
    EXPECT_EQ(in.read(), -1);
}

struct Lines {
    std::u16string text;
    std::vector<std::u16string> lines;
};

TEST(BufferedReader, givesLinesWhereverTheBufferEnds)
{
    const std::u16string longer(40, u'x');
    const Lines rows[] = {
        {u"a\r\nb", {u"a", u"b"}},
        {u"a\rb\n\rc\r\r\n", {u"a", u"b", u"", u"c", u""}},
        {longer + u"\r\n" + longer, {longer, longer}},
        {u"0123456789abcde\r\nnext", {u"0123456789abcde", u"next"}}, // ends between the two
        {u"0123456789abcde\rnext", {u"0123456789abcde", u"next"}},
        {std::u16string(u"\0a\u000B\u2028\n", 5), {std::u16string(u"\0a\u000B\u2028", 4)}},
    };
    for (const Lines& row : rows) {
        for (const std::size_t piece : {1u, 3u, 100u}) {
            SCOPED_TRACE(orv::test::readable(row.text) + " by " + std::to_string(piece));
            BufferedReader in(makeReference<PieceReader>(row.text, piece).get(), 16);
            String line(u"before");
            for (const std::u16string& expected : row.lines) {
                EXPECT_EQ(in.readLine(line), static_cast<std::int32_t>(expected.size()));
                EXPECT_EQ(orv::test::units(line), expected);
            }
            EXPECT_EQ(in.readLine(line), -1);
            EXPECT_EQ(line, u"");
        }
    }
}

} // namespace
} // namespace orv::io
