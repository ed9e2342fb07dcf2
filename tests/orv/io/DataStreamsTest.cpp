#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"

#include "orv/String.h"
#include "tests/orv/io/Streams.h"

#include <functional>
#include <limits>

namespace orv::io {
namespace {

using namespace std::string_view_literals;
using test::PieceStream;
using test::RecordingStream;

Reference<DataInputStream> dataIn(std::string_view bytes)
{
    return makeReference<DataInputStream>(makeReference<PieceStream>(std::string(bytes), 3u).get());
}

TEST(DataOutputStream, laysOutEachKindWithTheHighByteFirst)
{
    struct Row {
        const char* name;
        std::function<void(DataOutputStream&)> write;
        std::string_view bytes;
    };
    const Row rows[] = {
        {"bool", [](auto& out) { out.writeBool(true), out.writeBool(false); }, "\1\0"sv},
        {"byte", [](auto& out) { out.writeUnsignedByte(0x80); }, "\x80"sv},
        {"char", [](auto& out) { out.writeChar(u'\u20AC'); }, "\x20\xAC"sv},
        {"char32", [](auto& out) { out.writeChar32(0x1F600); }, "\0\1\xF6\0"sv},
        {"short", [](auto& out) { out.writeShort(-2); }, "\xFF\xFE"sv},
        {"int", [](auto& out) { out.writeInt32(0x01020304); }, "\1\2\3\4"sv},
        {"unsigned", [](auto& out) { out.writeUnsignedInt(0x89ABCDEF); }, "\x89\xAB\xCD\xEF"sv},
        {"int64", [](auto& out) { out.writeInt64(0x0102030405060708); }, "\1\2\3\4\5\6\7\10"sv},
        {"float", [](auto& out) { out.writeFloat(-1.5F); }, "\xBF\xC0\0\0"sv},
        {"double", [](auto& out) { out.writeDouble(1.5); }, "\x3F\xF8\0\0\0\0\0\0"sv},
        {"string", [](auto& out) { out.writeString(String(u"text")); }, ""sv},
    };
    for (const Row& row : rows) {
        const auto bytes = makeReference<RecordingStream>();
        row.write(*makeReference<DataOutputStream>(bytes.get()));
        EXPECT_EQ(bytes->content, row.bytes) << row.name;
        EXPECT_EQ(bytes->writes, static_cast<int>(row.bytes.size())) << row.name;
    }
}

TEST(DataInputStream, readsEachKind)
{
    EXPECT_TRUE(dataIn("\x7F")->readBool());
    EXPECT_FALSE(dataIn("\0"sv)->readBool());
    EXPECT_EQ(dataIn("\x80")->readByte(), -128);
    EXPECT_EQ(dataIn("\x80")->readUnsignedByte(), 0x80);
    EXPECT_EQ(dataIn("\x20\xAC")->readChar(), u'\u20AC');
    EXPECT_EQ(dataIn("\0\1\xF6\0"sv)->readChar32(), 0x1F600u);
    EXPECT_EQ(dataIn("\xFF\xFE")->readShort(), -2);
    EXPECT_EQ(dataIn("\xFF\xFE")->readUnsignedShort(), 0xFFFE);
    EXPECT_EQ(dataIn("\x89\xAB\xCD\xEF")->readUnsignedInt(), 0x89ABCDEF);
    EXPECT_EQ(dataIn("\xBF\xC0\0\0"sv)->readFloat(), -1.5F);
    EXPECT_EQ(dataIn("\x3F\xF8\0\0\0\0\0\0"sv)->readDouble(), 1.5);
    EXPECT_EQ(dataIn("text")->readString(), String());
}

TEST(DataInputStream, aLowHalfWithItsTopBitFillsTheHighHalfOfAnInt64)
{
    EXPECT_EQ(dataIn("\1\2\3\4\x7F\6\7\10"sv)->readInt64(), 0x010203047F060708);
    EXPECT_EQ(dataIn("\1\2\3\4\x80\0\0\0"sv)->readInt64(), std::int64_t{-0x80000000LL});
    EXPECT_EQ(dataIn("\x80\0\0\0\0\0\0\0"sv)->readInt64(),
              std::numeric_limits<std::int64_t>::min());
}

TEST(DataInputStream, aValueThatTheEndCutsUsesUpWhatIsThere)
{
    const auto thrown = [](auto read) { return test::thrownBy<UnexpectedEOFException>(read); };
    const auto in = dataIn("\1\2\3"sv);
    EXPECT_EQ(thrown([&] { in->readInt32(); }), u"");
    EXPECT_EQ(in->read(), -1);
    EXPECT_EQ(thrown([] { dataIn("\1")->readInt16(); }), u"");
    EXPECT_EQ(thrown([] { dataIn("\1\2\3\4\5")->readInt64(); }), u"");
    EXPECT_EQ(thrown([] { dataIn("")->readBool(); }), u"");
    EXPECT_EQ(thrown([] { dataIn("")->readByte(); }), u"");

    signed char block[8] = {};
    const auto pieces = dataIn("abcdefgh");
    pieces->readFully(block, 7);
    EXPECT_EQ(std::string(block, block + 8), "abcdefg\0"sv);
    EXPECT_EQ(thrown([&] { pieces->readFully(block, 2); }), u"");
    pieces->readFully(block, 0);
}

} // namespace
} // namespace orv::io
