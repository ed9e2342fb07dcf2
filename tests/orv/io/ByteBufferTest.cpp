#include "orv/io/ByteBuffer.h"
#include "orv/io/ByteBufferStreams.h"

#include "compat/CORVByteBuffer.h"
#include "orv/Exceptions.h"
#include "tests/orv/io/Streams.h"

namespace orv::io::test {
namespace {

using namespace std::string_view_literals;

/// The two classes of buffers, which behave alike.
template <class Buffer>
struct ByteBufferTest : testing::Test {
    using Order = decltype(std::declval<Buffer>().getOrder());
    static constexpr Order LITTLE{}, BIG = static_cast<Order>(1), MIXED = static_cast<Order>(2);
};
using Buffers = testing::Types<ByteBuffer, CORVByteBuffer>;
TYPED_TEST_SUITE(ByteBufferTest, Buffers);

/// A buffer of its own with these bytes, position 0 and limit behind them.
template <class Buffer = ByteBuffer>
Reference<Buffer> bufferOf(std::string_view bytes,
                           typename ByteBufferTest<Buffer>::Order order = {})
{
    auto buffer = makeReference<Buffer>(static_cast<unsigned>(bytes.size()), order, false);
    for (const char byte : bytes) buffer->put(static_cast<signed char>(byte));
    buffer->flip();
    return buffer;
}

/// All bytes of the capacity.
template <class Buffer>
std::string bytesOf(const Buffer& buffer)
{
    std::string bytes;
    for (unsigned i = 0; i < buffer.getCapacity(); ++i) {
        bytes += static_cast<char>(buffer.get(i));
    }
    return bytes;
}

TYPED_TEST(ByteBufferTest, laysOutNumbersInItsOrderAtAnyPlace)
{
    const std::string_view big = "?\1\2\3\4\5\6\7\10\11\12\13\14\15\16\x3F\xC0\0\0\xBF\xF8"
                                 "\0\0\0\0\0\0"sv;
    const std::string_view little = "?\2\1\6\5\4\3\16\15\14\13\12\11\10\7\0\0\xC0\x3F\0\0\0\0\0\0"
                                    "\xF8\xBF"sv;
    for (const auto& [order, bytes] : {std::pair{TestFixture::BIG, big},
                                       {TestFixture::LITTLE, little},
                                       {TestFixture::MIXED, big}}) {
        TypeParam relative(27u, order, false), absolute(27u, order, false);
        relative.put('?');
        relative.putInt16(0x0102);
        relative.putInt32(0x03040506);
        relative.putInt64(0x0708090A0B0C0D0E);
        relative.putFloat(1.5F);
        relative.putDouble(-1.5);
        EXPECT_EQ(bytesOf(relative), bytes);
        relative.flip();
        absolute.put(0u, relative.get());
        absolute.putInt16(1, relative.getInt16());
        absolute.putInt32(3, relative.getInt32());
        absolute.putInt64(7, relative.getInt64());
        absolute.putFloat(15, relative.getFloat());
        absolute.putDouble(19, relative.getDouble());
        EXPECT_EQ(bytesOf(absolute), bytes);
        EXPECT_EQ(absolute.getInt16(1) + absolute.getInt32(3), 0x0102 + 0x03040506);
        EXPECT_EQ(absolute.getInt64(7), 0x0708090A0B0C0D0E);
    }
}

TYPED_TEST(ByteBufferTest, keepsPositionBelowLimitBelowCapacity)
{
    TypeParam buffer(4u, TestFixture::BIG, false);
    buffer.setLimit(3);
    buffer.setPosition(3);
    EXPECT_THROW(buffer.setPosition(4), RangeErrorException);
    EXPECT_THROW(buffer.setLimit(5), RangeErrorException);
    buffer.put(3u, 7);
    EXPECT_EQ(buffer.get(), 7) << "single values don't look at the limit";
    signed char bytes[4] = {};
    EXPECT_EQ(buffer.get(bytes, 4), 0u) << "the position is above the limit";
    buffer.rewind();
    EXPECT_EQ(buffer.get(1u, bytes, 4), 2u);
    EXPECT_EQ(buffer.put(bytes, 4), 3u);
    buffer.setLimit(1);
    EXPECT_EQ(buffer.getPosition(), 3u);
    buffer.clear();
    EXPECT_EQ(buffer.remaining(), 4u);
}

TYPED_TEST(ByteBufferTest, readOnlyRefusesEveryPut)
{
    const signed char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    TypeParam buffer(bytes, 8, TestFixture::LITTLE);
    EXPECT_THROW(buffer.put(0u, 0), ReadOnlyException);
    EXPECT_THROW(buffer.put(0u, bytes, 1), ReadOnlyException);
    EXPECT_THROW(buffer.putInt16(0, 0), ReadOnlyException);
    EXPECT_THROW(buffer.putDouble(0), ReadOnlyException);
    EXPECT_EQ(buffer.getPosition(), 0u);
    EXPECT_THROW(buffer.put(9), ReadOnlyException);
    EXPECT_EQ(buffer.getPosition(), 1u) << "this one moves first";
}

TYPED_TEST(ByteBufferTest, comparesAndHashesAllItsBytes)
{
    const auto a = bufferOf<TypeParam>("ab\x80");
    const auto b = bufferOf<TypeParam>("ab\x7F");
    const auto longer = bufferOf<TypeParam>("ab\x80\0"sv);
    EXPECT_EQ(a->compareTo(*b), 1) << "bytes have no sign here";
    EXPECT_EQ(b->compareTo(*a), -1);
    EXPECT_EQ(b->compareTo(*longer), -1);
    EXPECT_THROW(a->compareTo(String()), CastFailedException);
    EXPECT_FALSE(a->equals(*b) || a->equals(*longer) || a->equals(String()));
    b->put(2u, -128);
    b->setLimit(1);
    EXPECT_TRUE(a->equals(*b));
    EXPECT_EQ(a->hashCode(), ('a' * 37u + 'b') * 37u - 128u);
    // From 64 bytes on, every second one counts.
    const auto many = bufferOf<TypeParam>(std::string(64, 'x')),
               odd = bufferOf<TypeParam>(std::string(64, 'x'));
    odd->put(63u, 'y');
    EXPECT_EQ(odd->hashCode(), many->hashCode());
    odd->put(62u, 'y');
    EXPECT_EQ(odd->hashCode(), many->hashCode() + 1);
}

TYPED_TEST(ByteBufferTest, copiesShareTheArrayWhichGoesWithTheLast)
{
    auto first = bufferOf<TypeParam>("abc");
    const auto copy = makeReference<TypeParam>(*first);
    copy->put(0u, 'A');
    TypeParam third(0u, TestFixture::LITTLE, false), keeper(third);
    third = *copy;
    first = nullptr;
    signed char mine[2] = {'x', 'y'};
    copy->setBuffer(mine, 2, TestFixture::BIG, false);
    EXPECT_EQ(bytesOf(*copy), "xy");
    EXPECT_EQ(bytesOf(third), "Abc");
    EXPECT_THROW(third.setBuffer(mine, 2, TestFixture::MIXED, true), UnsupportedOperationException);
    EXPECT_EQ(bytesOf(third), "xy");
    EXPECT_EQ(third.getOrder(), TestFixture::LITTLE);
}

TYPED_TEST(ByteBufferTest, duplicatesCopyAllAndSlicesViewTheRest)
{
    const auto source = bufferOf<TypeParam>("abcdef", TestFixture::BIG);
    source->setPosition(2);
    source->setLimit(4);
    const auto same = source->duplicate(true, 0), wider = source->duplicate(false, 9);
    EXPECT_EQ(bytesOf(*same), "abcdef");
    EXPECT_TRUE(same->isReadOnly());
    EXPECT_EQ(bytesOf(*wider).substr(0, 6), "abcdef");
    EXPECT_EQ(wider->getPosition() + wider->getLimit(), 6u);
    EXPECT_EQ(wider->getOrder(), TestFixture::BIG);
    EXPECT_THROW(source->duplicate(false, 5), RangeErrorException);

    const auto slice = source->slice();
    slice->put('C');
    EXPECT_EQ(bytesOf(*source), "abCdef");
    EXPECT_EQ(bytesOf(*slice), "Cd");
    EXPECT_TRUE(same->slice()->isReadOnly());
}

TYPED_TEST(ByteBufferTest, fillsFromStreamsAndEmptiesIntoThem)
{
    const auto buffer = makeReference<TypeParam>(7u, TestFixture::LITTLE, false);
    const auto in = makeReference<PieceStream>("abcdefghi", 3u);
    EXPECT_EQ(buffer->readFrom(in.get()), 3u);
    EXPECT_EQ(buffer->readFully(in.get()), 4u);
    buffer->flip();
    buffer->setPosition(2);
    const auto out = makeReference<RecordingStream>();
    EXPECT_EQ(buffer->writeTo(out.get()) + buffer->writeTo(out.get()), 5u);
    EXPECT_EQ(out->content, "cdefg");
    buffer->clear();
    EXPECT_EQ(buffer->readFully(in.get()), 2u);
    EXPECT_EQ(buffer->getPosition(), 2u);
}

TEST(ByteBufferStreams, stayBelowTheLimit)
{
    const auto buffer = bufferOf("abcd");
    buffer->setLimit(3);
    const auto in = makeReference<ByteBufferInputStream>(buffer.get());
    EXPECT_EQ(readOnce(*in, 0), "");
    EXPECT_EQ(readOnce(*in, 9), "abc");
    EXPECT_EQ(readOnce(*in, 0), "|-1");
    buffer->rewind();
    const auto out = makeReference<ByteBufferOutputStream>(buffer.get());
    out->write("ABC", 3);
    EXPECT_EQ(out->Overflowed(), 0);
    out->write("D", 1);
    EXPECT_EQ(out->Overflowed(), 1);
    EXPECT_EQ(bytesOf(*buffer), "ABCd");
}

} // namespace
} // namespace orv::io::test
