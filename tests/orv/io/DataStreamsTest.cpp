#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"

#include "orv/String.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using namespace std::string_view_literals;
using test::PieceStream;
using test::RecordingStream;

Reference<DataInputStream> dataIn(std::string_view bytes)
{
    return makeReference<DataInputStream>(makeReference<PieceStream>(std::string(bytes), 3u).get());
}

TEST(DataStreams, layOutEachKindWithTheHighByteFirst)
{
    const auto bytes = makeReference<RecordingStream>();
    const auto out = makeReference<DataOutputStream>(bytes.get());
    out->writeBool(true);
    out->writeUnsignedByte(0x80);
    out->writeChar(u'\u20AC');
    out->writeChar32(0x1F600);
    out->writeShort(-2);
    out->writeUnsignedInt(0x89ABCDEF);
    out->writeString(String(u"text"));
    out->writeInt64(0x0102030405060708);
    out->writeFloat(-1.5F);
    out->writeDouble(1.5);
    EXPECT_EQ(bytes->content, "\1\x80\x20\xAC\0\1\xF6\0\xFF\xFE\x89\xAB\xCD\xEF\1\2\3\4\5\6\7\10"
                              "\xBF\xC0\0\0\x3F\xF8\0\0\0\0\0\0"sv);
    EXPECT_EQ(bytes->writes, 34) << "each byte by itself";

    const auto in = dataIn(bytes->content);
    EXPECT_TRUE(in->readBool());
    EXPECT_EQ(in->readByte(), -128);
    EXPECT_EQ(in->readChar(), u'\u20AC');
    EXPECT_EQ(in->readChar32(), 0x1F600u);
    EXPECT_EQ(in->readUnsignedShort(), 0xFFFE);
    EXPECT_EQ(in->readUnsignedInt(), 0x89ABCDEF);
    EXPECT_EQ(in->readString(), String());
    EXPECT_EQ(in->readInt64(), 0x0102030405060708);
    EXPECT_EQ(in->readFloat(), -1.5F);
    EXPECT_EQ(in->readDouble(), 1.5);
    EXPECT_TRUE(dataIn("\x7F")->readBool());
    EXPECT_FALSE(dataIn("\0"sv)->readBool());
}

TEST(DataInputStream, aLowHalfWithItsTopBitFillsTheHighHalfOfAnInt64)
{
    EXPECT_EQ(dataIn("\1\2\3\4\x80\0\0\0"sv)->readInt64(), std::int64_t{-0x80000000LL});
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

    signed char block[8] = {};
    const auto pieces = dataIn("abcdefgh");
    pieces->readFully(block, 7);
    EXPECT_EQ(std::string(block, block + 8), "abcdefg\0"sv);
    EXPECT_EQ(thrown([&] { pieces->readFully(block, 2); }), u"");
}

} // namespace
} // namespace orv::io
