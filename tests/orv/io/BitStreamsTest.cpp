#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"

#include "orv/Exceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

using namespace std::string_view_literals;
using test::codeThrownBy;
using test::PieceStream;
using test::RecordingStream;

struct Bits {
    Reference<RecordingStream> bytes = makeReference<RecordingStream>();
    Reference<BitOutputStream> out = makeReference<BitOutputStream>(bytes.get());
};

Reference<BitInputStream> bitsIn(std::string_view bytes)
{
    return makeReference<BitInputStream>(makeReference<PieceStream>(std::string(bytes)).get());
}

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
    const auto in = bitsIn(bits.bytes->content);
    EXPECT_EQ(in->readBit(), 1);
    EXPECT_EQ(in->read(1), 0);
    EXPECT_EQ(in->read(31), 0x2AAAAAAA);
    EXPECT_EQ(in->read(7), 0x40);
    EXPECT_EQ(in->read(), 'A');
    EXPECT_EQ(in->read(40), -1) << "a number that the end cuts";
    EXPECT_EQ(in->readBit(), -1);
}

TEST(BitOutputStream, refusesWhatDoesNotFitAndWritesNothingOfIt)
{
    Bits bits;
    BitOutputStream& out = *bits.out;
    const auto tooBig = [](auto write) { return test::thrownBy<RangeErrorException>(write); };
    const String text(u"Number out of range");
    EXPECT_EQ(tooBig([&] { out.write(2, 1); }), text);
    EXPECT_EQ(tooBig([&] { out.write(1, 32); }), text);
    EXPECT_EQ(codeThrownBy([&] { out.write(0, 33); }), 0x80070057);
    EXPECT_EQ(codeThrownBy([&] { out.write(0, 0); }), 0x80070057);
    EXPECT_EQ(tooBig([&] { out.write("\x7F\x80", 2); }), text);
    out.write(0, 32);
    out.write(255, 8);
    EXPECT_EQ(bits.bytes->content, "\x7F\0\0\0\0\xFF"sv);
    out.writeBit(true);
    out.close();
    EXPECT_EQ(bits.bytes->content.size(), 6u) << "close() dropped the open byte";
}

TEST(BitInputStream, givesBytesUpToTheEnd)
{
    const auto in = bitsIn("\xFF\x81"sv);
    EXPECT_EQ(test::readOnce(*in, 0), "|-1");
    EXPECT_EQ(in->read(4), 15);
    EXPECT_EQ(test::readOnce(*in, 5), "\xF8");
    EXPECT_EQ(test::readOnce(*in, 5), "|-1");
}

/// Its readBit() turns each bit, and so must everything that reads bits.
struct Turned : BitInputStream {
    using BitInputStream::BitInputStream;
    std::int32_t readBit() override { return 1 - BitInputStream::readBit(); }
};

struct TurnedOut : BitOutputStream {
    using BitOutputStream::BitOutputStream;
    void writeBit(bool bit) override { BitOutputStream::writeBit(!bit); }
};

TEST(BitStreams, ofDerivedClassesGoBitByBit)
{
    const auto in = makeReference<Turned>(makeReference<PieceStream>("\x9B\xE0").get());
    EXPECT_EQ(in->read(4), 6);
    EXPECT_EQ(in->read(), 'A');
    const auto bytes = makeReference<RecordingStream>();
    makeReference<TurnedOut>(bytes.get())->write("A", 1);
    EXPECT_EQ(bytes->content, "\xBE");
}

TEST(BitOutputStream, offersAByteThatWasRefusedAgain)
{
    struct Failing : OutputStream {
        using OutputStream::write;
        void write(const signed char* bytes, std::int32_t) override
        {
            if (writes++ == 0) throw IoException(u"full");
            written = *bytes;
        }
        int writes = 0, written = 0;
    };
    const auto bytes = makeReference<Failing>();
    const auto out = makeReference<BitOutputStream>(bytes.get());
    out->write(5, 7);
    EXPECT_EQ(test::thrownBy([&] { out->writeBit(true); }), u"full");
    out->writeBit(true);
    EXPECT_EQ(bytes->written, 0x0B);
}

} // namespace
} // namespace orv::io
