#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "tests/orv/io/Streams.h"

#include <array>
#include <vector>

namespace orv::io::test {
namespace {

const std::string LETTERS = "abcdefghijklmnopqrstuvwxyz";

TEST(BufferedInputStream, givesSingleBytesWithTheirSignAndOthersGiveNone)
{
    BufferedInputStream in(makeReference<PieceStream>("\x80\xFF\xFF").get(), 16);
    EXPECT_EQ(in.read(), -128);
    EXPECT_EQ(in.read(), -1);
    EXPECT_EQ(readOnce(in, 1), "\xFF");
    EXPECT_EQ(readOnce(in, 1), "|-1");
    EXPECT_EQ(in.read(), -1);
    PieceStream plain("\xFF");
    EXPECT_EQ(plain.read(), 0xFF);
    EXPECT_EQ(plain.read(), -1);
    BufferedReader reader(makeReference<PieceReader>(u"\uFFFF").get(), 16);
    EXPECT_EQ(reader.read(), 0xFFFF);
    EXPECT_EQ(reader.read(), -1);
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
        const String thrown = thrownBy([&] {
            in.reset();
            EXPECT_EQ(readOnce(in, 3), row.outcome);
            in.reset();
            EXPECT_EQ(in.skip(100), 26 - row.before);
        });
        EXPECT_EQ(thrown,
                  row.outcome == std::string("mark invalid") ? u"mark invalid" : u"nothing");
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

TEST(BufferedStreams, closeDropsWhatIsNotFlushed)
{
    const auto inner = makeReference<RecordingStream>();
    const auto close = [](auto&& out, auto unit) {
        out.write(unit);
        out.close();
    };
    close(BufferedOutputStream(inner.get(), 16), static_cast<signed char>('a'));
    close(OutputStreamWriter(inner.get(), u"UTF-8", 64), u'a');
    EXPECT_EQ(inner->content, "");
    close(AlphaNumOutputStream(inner.get(), nullptr), static_cast<signed char>(0));
    EXPECT_EQ(inner->content, "A") << "the symbol that was whole";
    BitOutputStream bits(inner.get());
    bits.writeBit(true);
    bits.close();
    EXPECT_EQ(inner->content, "A");
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
