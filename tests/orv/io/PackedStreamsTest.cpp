#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"

#include "orv/Exceptions.h"
#include "orv/text/charset/CharsetExceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io::test {
namespace {

using namespace std::string_view_literals;
using text::charset::InvalidCharacterException;

/// A stream of the kind over these bytes, which come in pieces of three.
template <class Stream, class... Arguments>
Reference<Stream> over(std::string_view bytes, Arguments... arguments)
{
    return makeReference<Stream>(makeReference<PieceStream>(std::string(bytes), 3u).get(),
                                 arguments...);
}

// The default alphabet in another order, with two characters above ASCII.
constexpr const char16_t* TURNED = u"98765432ZYXWVUTSRQPNMLKJHGFEDC\u00C4\u00D6";
constexpr const char16_t* DEFAULT = nullptr;

std::string encoded(std::string_view bytes, const char16_t* alphabet = DEFAULT)
{
    const auto text = makeReference<RecordingStream>();
    const auto out = makeReference<AlphaNumOutputStream>(text.get(), alphabet);
    out->write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    out->flush();
    return text->content;
}

TEST(AlphaNumStreams, fiveBytesAreEightSymbolsAndShorterGroupsGainAByte)
{
    using Row = std::tuple<std::string_view, std::string_view, std::string_view>;
    for (const auto& [bytes, text, back] :
         {Row{"\0\0\0\0\0"sv, "AAAAAAAA", "\0\0\0\0\0"sv},
          {"\xFF"sv, "96", "\xFF\0"sv},
          {"\x12\x34"sv, "CJ4A", "\x12\x34\0"sv},
          {"\x12\x34\x56"sv, "CJ4FN", "\x12\x34\x56\0"sv},
          {"\x12\x34\x56\x78"sv, "CJ4FN8A", "\x12\x34\x56\x78\0"sv},
          {"\x12\x34\x56\x78\x9A"sv, "CJ4FN8E4", "\x12\x34\x56\x78\x9A"sv},
          {""sv, "", "|-1"sv}}) {
        EXPECT_EQ(encoded(bytes), text);
        EXPECT_EQ(readOnce(*over<AlphaNumInputStream>(text, DEFAULT), 9), back) << text;
    }
}

TEST(AlphaNumStreams, carryEveryByteInEveryPlaceOfAGroup)
{
    std::string bytes;
    for (int i = 0; i < 256 * 5; ++i) bytes += static_cast<char>(i * 7 + i / 256);
    for (const char16_t* alphabet : {DEFAULT, TURNED}) {
        const auto in = over<AlphaNumInputStream>(encoded(bytes, alphabet), alphabet);
        EXPECT_EQ(readOnce(*in, 7), bytes.substr(0, 7));
        EXPECT_EQ(in->skip(4), 4);
        EXPECT_EQ(in->read(), static_cast<unsigned char>(bytes[11]));
        EXPECT_EQ(readOnce(*in, 2000), bytes.substr(12));
    }
}

TEST(AlphaNumStreams, aGroupEndsAtAFlushOrAtTheEnd)
{
    const auto written = makeReference<RecordingStream>();
    const auto out = makeReference<AlphaNumOutputStream>(written.get(), DEFAULT);
    out->write(static_cast<signed char>(-1));
    out->flush();
    out->write(static_cast<signed char>(0));
    out->flush();
    EXPECT_EQ(written->content, "96AA");

    const auto text = makeReference<PieceStream>("99");
    const auto in = makeReference<AlphaNumInputStream>(text.get(), DEFAULT);
    EXPECT_EQ(readOnce(*in, 9), "\xFF\xC0");
    text->content += "AA";
    EXPECT_EQ(readOnce(*in, 9), "\0\0"sv);
    text->ready = 2000000000;
    EXPECT_EQ(in->available(), 1250000000) << "five eighths of the text";
}

TEST(AlphaNumInputStream, refusesWhatIsNoSymbolAndGoesOnBehindIt)
{
    for (const char* wrong : {"a", "I", "O", "0", "1", " ", "\n", "\x80", "\xFF"}) {
        const auto in = over<AlphaNumInputStream>("9" + std::string(wrong) + "6AA", DEFAULT);
        const auto read = [&] { readOnce(*in, 9); };
        EXPECT_EQ(thrownBy<InvalidCharacterException>(read), u"Invalid AlphaNum character");
        EXPECT_EQ(readOnce(*in, 9), "\xFF\0\0"sv) << wrong;
    }
    // An alphabet has 32 characters.
    for (const char16_t* alphabet :
         {u"ABCDEFGHJKLMNPQRSTUVWXYZ2345678", u"ABCDEFGHJKLMNPQRSTUVWXYZ234567890"}) {
        EXPECT_EQ(codeThrownBy([&] { over<AlphaNumInputStream>("A", alphabet); }), 0x80070057);
        EXPECT_EQ(codeThrownBy([&] { encoded("", alphabet); }), 0x80070057);
    }
}

/// Refuses its first byte if told to.
struct Bytes : RecordingStream {
    using RecordingStream::write;
    void write(const signed char* bytes, std::int32_t n) override
    {
        if (std::exchange(isFull, false)) throw IoException(u"full");
        RecordingStream::write(bytes, n);
    }
    bool isFull = false;
};

struct Bits {
    Reference<Bytes> bytes = makeReference<Bytes>();
    Reference<BitOutputStream> out = makeReference<BitOutputStream>(bytes.get());
};

TEST(BitStreams, packTheTopBitFirstAcrossBytes)
{
    Bits bits;
    bits.out->write(1, 1);
    bits.out->write(0, 1);
    bits.out->write(0x2AAAAAAAu, 31);
    bits.out->writeBit(true);
    bits.out->flush();
    bits.out->write("AB", 2);
    EXPECT_EQ(bits.bytes->content, "\x95\x55\x55\x55\x40\x41\x42");
    const auto in = over<BitInputStream>(bits.bytes->content);
    EXPECT_EQ(in->readBit(), 1);
    EXPECT_EQ(in->read(1), 0);
    EXPECT_EQ(in->read(31), 0x2AAAAAAA);
    EXPECT_EQ(in->read(3), 4);
    EXPECT_EQ(readOnce(*in, 0), "|-1");
    EXPECT_EQ(readOnce(*in, 5), "\x04\x14");
    EXPECT_EQ(readOnce(*in, 5), "|-1");
    EXPECT_EQ(in->readBit(), -1);
    EXPECT_EQ(over<BitInputStream>("A")->read(9), -1) << "a number that the end cuts";
}

TEST(BitOutputStream, refusesWhatDoesNotFitAndWritesNothingOfIt)
{
    Bits bits;
    BitOutputStream& out = *bits.out;
    const auto tooBig = [](auto write) { return thrownBy<RangeErrorException>(write); };
    const String text(u"Number out of range");
    EXPECT_EQ(tooBig([&] { out.write(2, 1); }), text);
    EXPECT_EQ(tooBig([&] { out.write(1, 32); }), text);
    EXPECT_EQ(codeThrownBy([&] { out.write(0, 33); }), 0x80070057);
    EXPECT_EQ(codeThrownBy([&] { out.write(0, 0); }), 0x80070057);
    EXPECT_EQ(tooBig([&] { out.write("\x7F\x80", 2); }), text);
    out.write(0, 32);
    out.write(255, 8);
    out.write(5, 7);
    bits.bytes->isFull = true;
    EXPECT_EQ(thrownBy([&] { out.writeBit(true); }), u"full");
    out.writeBit(true);
    EXPECT_EQ(bits.bytes->content, "\x7F\0\0\0\0\xFF\x0B"sv) << "a refused byte comes again";
}

/// Its readBit() turns each bit, and so must everything that reads bits.
struct TurnedIn : BitInputStream {
    using BitInputStream::BitInputStream;
    std::int32_t readBit() override { return 1 - BitInputStream::readBit(); }
};

struct TurnedOut : BitOutputStream {
    using BitOutputStream::BitOutputStream;
    void writeBit(bool bit) override { BitOutputStream::writeBit(!bit); }
};

TEST(BitStreams, ofDerivedClassesGoBitByBit)
{
    const auto in = over<TurnedIn>("\x9B\xE0");
    EXPECT_EQ(in->read(4), 6);
    EXPECT_EQ(in->read(), 'A');
    const auto bytes = makeReference<RecordingStream>();
    makeReference<TurnedOut>(bytes.get())->write("A", 1);
    EXPECT_EQ(bytes->content, "\xBE");
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

    const auto in = over<DataInputStream>(bytes->content);
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
    EXPECT_TRUE(over<DataInputStream>("\x7F")->readBool());
    EXPECT_FALSE(over<DataInputStream>("\0"sv)->readBool());
    // A low half with its top bit set fills the high half.
    EXPECT_EQ(over<DataInputStream>("\1\2\3\4\x80\0\0\0"sv)->readInt64(), -0x80000000LL);
}

TEST(DataInputStream, aValueThatTheEndCutsUsesUpWhatIsThere)
{
    const auto thrown = [](auto read) { return thrownBy<UnexpectedEOFException>(read); };
    const auto in = over<DataInputStream>("\1\2\3"sv);
    EXPECT_EQ(thrown([&] { in->readInt32(); }), u"");
    EXPECT_EQ(in->read(), -1);
    EXPECT_EQ(thrown([] { over<DataInputStream>("\1")->readInt16(); }), u"");
    EXPECT_EQ(thrown([] { over<DataInputStream>("\1\2\3\4\5")->readInt64(); }), u"");
    EXPECT_EQ(thrown([] { over<DataInputStream>("")->readBool(); }), u"");

    signed char block[8] = {};
    const auto pieces = over<DataInputStream>("abcdefgh");
    pieces->readFully(block, 7);
    EXPECT_EQ(std::string(block, block + 8), "abcdefg\0"sv);
    EXPECT_EQ(thrown([&] { pieces->readFully(block, 2); }), u"");
}

} // namespace
} // namespace orv::io::test
