#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"

#include "orv/Exceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io::test {
namespace {

using namespace std::string_view_literals;

/// A stream of the kind over these bytes, which come in pieces of three.
template <class Stream, class... Arguments>
Reference<Stream> over(std::string_view bytes, Arguments... arguments)
{
    return makeReference<Stream>(makeReference<PieceStream>(std::string(bytes), 3u).get(),
                                 arguments...);
}

// The default alphabet in another order, with two characters above ASCII.
constexpr const char16_t* TURNED = u"98765432ZYXWVUTSRQPNMLKJHGFEDC\u00C4\u00D6";

/// The text of some bytes, flushed between each two.
std::string encoded(std::initializer_list<std::string_view> groups,
                    const char16_t* alphabet = nullptr)
{
    const auto text = makeReference<RecordingStream>();
    const auto out = makeReference<AlphaNumOutputStream>(text.get(), alphabet);
    for (const std::string_view bytes : groups) {
        out->write(bytes.data(), static_cast<std::int32_t>(bytes.size()));
        out->flush();
    }
    return text->content;
}

TEST(AlphaNumStreams, fiveBytesAreEightSymbolsAndShorterGroupsGainAByte)
{
    using Row = std::tuple<std::string_view, std::string_view, std::string_view>;
    for (const auto& [bytes, text, back] :
         {Row{"\0\0\0\0\0"sv, "AAAAAAAA", "\0\0\0\0\0"sv},
          {"\xFF"sv, "96", "\xFF\0"sv},
          {"\x12\x35"sv, "CJ4S", "\x12\x35\0"sv},
          {"\x12\x34\x57"sv, "CJ4FQ", "\x12\x34\x57\0"sv},
          {"\x12\x34\x56\x7B"sv, "CJ4FN82", "\x12\x34\x56\x7B\0"sv},
          {"\x12\x34\x56\x78\x9A"sv, "CJ4FN8E4", "\x12\x34\x56\x78\x9A"sv},
          {""sv, "", "|-1"sv}}) {
        EXPECT_EQ(encoded({bytes}), text);
        const auto in = over<AlphaNumInputStream>(text, nullptr);
        EXPECT_EQ(readOnce(*in, 9), back) << text;
        EXPECT_EQ(readOnce(*in, 9), "|-1") << "no second byte of what is left over";
    }
    EXPECT_EQ(encoded({"\xFF", "\0"sv}), "96AA") << "a flush ends the group";
}

TEST(AlphaNumStreams, carryEveryByteInEveryPlaceOfAGroup)
{
    std::string bytes;
    for (int i = 0; i < 256 * 5; ++i) bytes += static_cast<char>(i * 7 + i / 256);
    const auto in = over<AlphaNumInputStream>(encoded({bytes}, TURNED), TURNED);
    EXPECT_EQ(readOnce(*in, 7), bytes.substr(0, 7));
    EXPECT_EQ(in->skip(4), 4);
    EXPECT_EQ(in->read(), static_cast<unsigned char>(bytes[11]));
    EXPECT_EQ(readOnce(*in, 2000), bytes.substr(12));

    const auto text = makeReference<PieceStream>("");
    text->ready = 2000000000;
    AlphaNumInputStream ready(text.get(), nullptr);
    EXPECT_EQ(ready.available(), 1250000000) << "five eighths of the text";
}

TEST(AlphaNumInputStream, goesOnBehindWhatIsNoSymbol)
{
    const Refusal noSymbol(E_INVALID_CHARACTER, "Invalid AlphaNum character");
    for (const char* wrong : {"a", "I", "O", "0", "1", " ", "\n", "\x80", "\xFF"}) {
        const auto broken = over<AlphaNumInputStream>("9" + std::string(wrong) + "6AA", nullptr);
        EXPECT_EQ(refusalOf([&] { readOnce(*broken, 9); }), noSymbol);
        EXPECT_EQ(readOnce(*broken, 9), "\xFF\0\0"sv) << wrong;
    }
    const String shorter(u'A', 31), longer(u'A', 33);
    EXPECT_THROW(over<AlphaNumInputStream>("", shorter.getData()), ResultException);
    EXPECT_EQ(refusalOf([&] { encoded({}, longer.getData()); }).first, E_INVALIDARG);
}

TEST(BitStreams, packTheTopBitFirstAndNothingOfWhatDoesNotFit)
{
    const auto bytes = makeReference<RecordingStream>();
    const auto out = makeReference<BitOutputStream>(bytes.get());
    out->write(1, 1);
    out->write(0, 1);
    out->write(0x2AAAAAAAu, 31);
    out->writeBit(true);
    out->flush();
    const Refusal tooBig(E_FAIL, "Number out of range");
    EXPECT_EQ(refusalOf<RangeErrorException>([&] { out->write(2, 1); }), tooBig);
    EXPECT_EQ(refusalOf<RangeErrorException>([&] { out->write(1, 32); }), tooBig);
    EXPECT_EQ(refusalOf<RangeErrorException>([&] { out->write("A\x80", 2); }), tooBig);
    EXPECT_EQ(refusalOf([&] { out->write(0, 33); }).first, E_INVALIDARG);
    EXPECT_EQ(refusalOf([&] { out->write(0, 0); }).first, E_INVALIDARG);
    out->write(0, 32);
    out->write(255, 8);
    out->write(5, 7);
    bytes->isFull = true;
    EXPECT_THROW(out->writeBit(true), IoException);
    out->writeBit(true);
    EXPECT_EQ(bytes->content, "\x95\x55\x55\x55\x40\x41\0\0\0\0\xFF\x0B"sv)
        << "a refused byte comes again";

    const auto in = over<BitInputStream>(bytes->content);
    EXPECT_EQ(in->readBit(), 1);
    EXPECT_EQ(in->read(1), 0);
    EXPECT_EQ(in->read(31), 0x2AAAAAAA);
    EXPECT_EQ(in->read(3), 4);
    EXPECT_EQ(readOnce(*in, 0), "|-1");
    EXPECT_EQ(readOnce(*in, 9), "\x04\x10\0\0\0\x0F\xF0"sv);
    EXPECT_EQ(in->readBit(), -1);
    EXPECT_EQ(over<BitInputStream>("A")->read(9), -1) << "a number that the end cuts";
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

/// Writes a value, reads it back, and reads it from a stream that ends within it.
template <class Value>
void expectLayout(std::string_view bytes, Value value, void (DataOutputStream::*write)(Value),
                  Value (DataInputStream::*read)())
{
    const auto written = makeReference<RecordingStream>();
    DataOutputStream out(written.get());
    out.writeString(String(u"no text"));
    (out.*write)(value);
    EXPECT_EQ(written->content, bytes);
    const auto in = over<DataInputStream>(bytes);
    EXPECT_EQ(in->readString(), String());
    EXPECT_EQ((*in.*read)(), value);
    const auto cut = over<DataInputStream>(bytes.substr(1));
    EXPECT_THROW((*cut.*read)(), UnexpectedEOFException);
    EXPECT_EQ(cut->read(), -1) << "all that was there is used up";
}

TEST(DataStreams, layOutEachKindWithTheHighByteFirst)
{
    using In = DataInputStream;
    using Out = DataOutputStream;
    expectLayout("\1", true, &Out::writeBool, &In::readBool);
    expectLayout<std::uint8_t>("\x80", 128, &Out::writeUnsignedByte, &In::readUnsignedByte);
    expectLayout("\x20\xAC", u'\u20AC', &Out::writeChar, &In::readChar);
    expectLayout("\0\1\xF6\0"sv, 0x1F600u, &Out::writeChar32, &In::readChar32);
    expectLayout<std::int16_t>("\xFF\x7E", -130, &Out::writeShort, &In::readShort);
    expectLayout("\x89\xAB\xCD\xEF", 0x89ABCDEF, &Out::writeUnsignedInt, &In::readUnsignedInt);
    expectLayout("\1\2\3\4\5\6\7\10", 0x0102030405060708, &Out::writeInt64, &In::readInt64);
    expectLayout("\xBF\xC0\0\0"sv, -1.5F, &Out::writeFloat, &In::readFloat);
    expectLayout("\x3F\xF8\0\0\0\0\0\0"sv, 1.5, &Out::writeDouble, &In::readDouble);

    const auto in = over<In>("\0\x7F\1\2\3\4\x80\0\0\0abcdefgh"sv);
    EXPECT_TRUE(!in->readBool() && in->readBool());
    EXPECT_EQ(in->readInt64(), -0x80000000LL) << "a low half with its top bit set fills the high";
    DataInputStream withSign(over<BufferedInputStream>("\x80\0\0\1"sv, 16).get());
    EXPECT_THROW(withSign.readInt32(), UnexpectedEOFException) << "a negative byte is the end";
    signed char block[8] = {};
    in->readFully(block, 7);
    EXPECT_EQ(std::string(block, block + 8), "abcdefg\0"sv);
    EXPECT_THROW(in->readFully(block, 2), UnexpectedEOFException);
}

} // namespace
} // namespace orv::io::test
