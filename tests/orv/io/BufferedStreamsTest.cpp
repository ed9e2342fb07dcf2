#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/BufferedWriter.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "tests/orv/io/Streams.h"

#include <array>
#include <vector>

namespace orv::io::test {
namespace {

const std::string LETTERS = "abcdefghijklmnopqrstuvwxyz";

TEST(BufferedInputStream, givesSingleBytesWithTheirSign)
{
    BufferedInputStream in(makeReference<PieceStream>("\x80\xFF\xFF").get(), 16);
    EXPECT_EQ(in.read(), -128);
    EXPECT_EQ(in.read(), -1);
    EXPECT_EQ(readOnce(in, 1), "\xFF");
}

TEST(BufferedInputStream, returnsToAMarkWithinItsLimit)
{
    struct Row {
        std::int32_t before, limit, after;
        bool holds = true;
    };
    for (const Row& row : {Row{0, 5, 5},
                           {3, 10, 20, false}, // read past the limit, refilled
                           {3, 13, 14, false},
                           {3, 13, 13},   // not refilled yet
                           {3, 1000, 23}, // grows
                           {16, 16, 10},
                           {10, -1, 2}}) {
        SCOPED_TRACE(row.limit);
        BufferedInputStream in(makeReference<PieceStream>(LETTERS).get(), 16);
        EXPECT_EQ(refusalOf([&] { in.reset(); }), Refusal(E_FAIL, "stream not marked"));
        EXPECT_EQ(in.skip(row.before), row.before);
        in.mark(row.limit);
        EXPECT_EQ(in.skip(row.after), row.after);
        const Refusal refusal = refusalOf([&] { in.reset(); });
        EXPECT_EQ(refusal.second, row.holds ? "not refused" : "mark invalid");
        if (!row.holds) continue;
        EXPECT_EQ(readOnce(in, 3), LETTERS.substr(static_cast<std::size_t>(row.before), 3));
        in.reset();
        EXPECT_EQ(in.skip(100), 26 - row.before);
    }
    EXPECT_EQ(refusalOf([] { PieceStream("").reset(); }).second, "mark/reset not supported");
    EXPECT_EQ(refusalOf([] { PieceReader(u"").reset(); }).second, "mark/reset not supported");
}

TEST(BufferedOutputStream, passesOnWhatIsFullAndWhatIsLarge)
{
    const auto inner = makeReference<RecordingStream>();
    BufferedOutputStream out(inner.get(), 1); // holds 16
    out.write(LETTERS.data(), 10);
    out.write(LETTERS.data() + 10, 6);
    EXPECT_EQ(inner->content, "");
    inner->isFull = true;
    const auto more = [&] { out.write(static_cast<signed char>('q')); };
    EXPECT_THROW(more(), IoException);
    more();
    EXPECT_EQ(inner->content, LETTERS.substr(0, 16)) << "offered whole again";
    out.write(LETTERS.data(), 16);
    EXPECT_EQ(inner->content, LETTERS.substr(0, 17) + LETTERS.substr(0, 16));
}

template <class Use>
void expectClosed(Use use)
{
    EXPECT_EQ(refusalOf<IoException>(use), Refusal(E_FAIL, "stream closed"));
}

/// Writes a unit, which is dropped, and closes.
template <class Stream, class Unit>
void writeAndClose(Stream&& out, Unit unit)
{
    out.write(unit);
    out.close();
    expectClosed([&] { out.write(unit); });
    expectClosed([&] { out.write(&unit, 1); });
    expectClosed([&] { out.flush(); });
}

TEST(BufferedStreams, closeDropsWhatIsNotFlushed)
{
    const auto bytes = makeReference<RecordingStream>();
    const auto units = makeReference<RecordingWriter>();
    writeAndClose(BufferedOutputStream(bytes.get(), 16), static_cast<signed char>('a'));
    writeAndClose(BufferedWriter(units.get(), 16), u'a');
    writeAndClose(OutputStreamWriter(bytes.get(), u"UTF-8", 64), u'a');
    EXPECT_EQ(bytes->writes + units->writes, 0);
    EXPECT_EQ(bytes->closed + units->closed, 3);

    AlphaNumOutputStream symbols(bytes.get(), nullptr);
    symbols.write(static_cast<signed char>(0));
    symbols.close();
    EXPECT_EQ(bytes->content, "A") << "the symbol that was whole";

    BufferedInputStream in(makeReference<PieceStream>(LETTERS).get(), 16);
    in.close();
    expectClosed([&] { in.read(); });
    expectClosed([&] { readOnce(in, 1); });
    expectClosed([&] { in.skip(1); });
    expectClosed([&] { in.available(); });
    expectClosed([&] { in.mark(1); });
    expectClosed([&] { in.reset(); });
}

TEST(BufferedReader, givesLinesWhereverTheBufferEnds)
{
    const std::u16string longer(40, u'x');
    using Row = std::pair<std::u16string, std::vector<std::u16string>>;
    const Row rows[] = {
        {u"a\r\nb", {u"a", u"b"}},
        {u"a\rb\n\rc\r\r\n", {u"a", u"b", u"", u"c", u""}},
        {longer + u"\r\n" + longer, {longer, longer}},
        {u"0123456789abcde\r\nnext", {u"0123456789abcde", u"next"}}, // ends between the two
        {u"0123456789abcde\rnext", {u"0123456789abcde", u"next"}},
        {std::u16string(u"\0a\u000B\u2028\n", 5), {std::u16string(u"\0a\u000B\u2028", 4)}},
    };
    for (const auto& [text, lines] : rows) {
        for (const std::size_t piece : {1u, 3u, 100u}) {
            SCOPED_TRACE(orv::test::readable(text) + " by " + std::to_string(piece));
            BufferedReader in(makeReference<PieceReader>(text, piece).get(), 16);
            String line(u"before");
            for (const std::u16string& expected : lines) {
                EXPECT_EQ(in.readLine(line), static_cast<std::int32_t>(expected.size()));
                EXPECT_EQ(orv::test::units(line), expected);
            }
            EXPECT_EQ(in.readLine(line), -1);
            EXPECT_EQ(line, u"");
        }
    }
}

struct Growing : ByteArrayOutputStream {
    using ByteArrayOutputStream::ByteArrayOutputStream;
    using ByteArrayOutputStream::capacity;
};

TEST(ByteArrayOutputStream, growsToFiveQuartersOfWhatIsNeeded)
{
    const signed char bytes[257] = {};
    for (const auto& [initial, written, capacity] :
         {std::array{0, 3, 3}, {0, 4, 5}, {256, 256, 256}, {256, 257, 321}}) {
        Growing stream(initial);
        stream.write(bytes, written);
        EXPECT_EQ(stream.capacity(), capacity) << initial << " then " << written;
    }
}

} // namespace
} // namespace orv::io::test
