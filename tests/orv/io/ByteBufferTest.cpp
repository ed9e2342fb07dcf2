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

    /// A buffer over some bytes.
    struct Over {
        explicit Over(std::string_view bytes, Order order = LITTLE)
            : text(bytes), buffer(reinterpret_cast<signed char*>(text.data()),
                                  static_cast<unsigned>(text.size()), order, false)
        {
        }
        std::string text;
        Buffer buffer;
    };
};
using Buffers = testing::Types<ByteBuffer, CORVByteBuffer>;
TYPED_TEST_SUITE(ByteBufferTest, Buffers);

TYPED_TEST(ByteBufferTest, laysOutNumbersInItsOrderAtAnyPlace)
{
    const std::string_view big = "?\1\2\3\4\5\6\7\10\11\12\13\14\15\16\x3F\xC0\0\0\xBF\xF8"
                                 "\0\0\0\0\0\0"sv;
    const std::string_view little = "?\2\1\6\5\4\3\16\15\14\13\12\11\10\7\0\0\xC0\x3F\0\0\0\0\0\0"
                                    "\xF8\xBF"sv;
    for (const auto& [order, bytes] :
         {std::pair{TestFixture::BIG, big}, {TestFixture::LITTLE, little}}) {
        typename TestFixture::Over first(little, order), second(big, order);
        TypeParam &relative = first.buffer, &absolute = second.buffer;
        relative.put('?');
        relative.putInt16(0x0102);
        relative.putInt32(0x03040506);
        relative.putInt64(0x0708090A0B0C0D0E);
        relative.putFloat(1.5F);
        relative.putDouble(-1.5);
        EXPECT_EQ(first.text, bytes);
        relative.flip();
        absolute.put(0u, relative.get());
        absolute.putInt16(1, relative.getInt16());
        absolute.putInt32(3, relative.getInt32());
        absolute.putInt64(7, relative.getInt64());
        absolute.putFloat(15, relative.getFloat());
        absolute.putDouble(19, relative.getDouble());
        EXPECT_EQ(second.text, bytes);
        EXPECT_EQ(absolute.getInt16(1) + absolute.getInt32(3), 0x0102 + 0x03040506);
        EXPECT_EQ(absolute.getInt64(7), 0x0708090A0B0C0D0E);
        EXPECT_EQ(absolute.getFloat(15) + absolute.getDouble(19), 0);
    }
}

TYPED_TEST(ByteBufferTest, staysBelowItsLimit)
{
    typename TestFixture::Over over("abcd");
    TypeParam& buffer = over.buffer;
    buffer.setLimit(3);
    buffer.setPosition(3);
    EXPECT_THROW(buffer.setPosition(4), RangeErrorException);
    EXPECT_THROW(buffer.setLimit(5), RangeErrorException);
    EXPECT_EQ(buffer.get(), 'd') << "single values don't look at the limit";
    signed char bytes[4] = {};
    EXPECT_EQ(buffer.get(bytes, 4), 0u) << "the position is above the limit";
    EXPECT_EQ(buffer.get(1u, bytes, 4), 2u);
    buffer.rewind();
    EXPECT_EQ(buffer.put(bytes, 4), 3u);
    EXPECT_EQ(over.text, "bc\0d"sv);
    buffer.setLimit(1);
    EXPECT_EQ(buffer.getPosition(), 3u);

    TypeParam readOnly(std::as_const(bytes), 4, TestFixture::LITTLE);
    EXPECT_THROW(readOnly.put(0u, 0), ReadOnlyException);
    EXPECT_THROW(readOnly.put(0u, bytes, 1), ReadOnlyException);
    EXPECT_THROW(readOnly.putInt16(0), ReadOnlyException);
    EXPECT_EQ(readOnly.getPosition(), 0u);
    EXPECT_THROW(readOnly.put(9), ReadOnlyException);
    EXPECT_EQ(readOnly.getPosition(), 1u) << "this one moves first";
}

TYPED_TEST(ByteBufferTest, comparesAndHashesAllItsBytes)
{
    typename TestFixture::Over high("ab\x80"), low("ab\x7F"), longer("ab\x80\0"sv);
    const TypeParam& a = high.buffer;
    EXPECT_EQ(a.compareTo(low.buffer), 1) << "bytes have no sign here";
    EXPECT_EQ(low.buffer.compareTo(a), -1);
    EXPECT_EQ(low.buffer.compareTo(longer.buffer), -1);
    EXPECT_THROW(a.compareTo(String()), CastFailedException);
    EXPECT_FALSE(a.equals(low.buffer) || a.equals(longer.buffer) || a.equals(String()));
    low.text[2] = high.text[2];
    low.buffer.setLimit(1);
    EXPECT_TRUE(a.equals(low.buffer));
    EXPECT_EQ(a.hashCode(), ('a' * 37u + 'b') * 37u - 128u);
    // From 64 bytes on, every second one counts.
    typename TestFixture::Over many(std::string(64, 'x'));
    const std::uint32_t hash = many.buffer.hashCode();
    many.text[63] = 'y';
    EXPECT_EQ(many.buffer.hashCode(), hash);
    many.text[62] = 'y';
    EXPECT_EQ(many.buffer.hashCode(), hash + 1);
}

TYPED_TEST(ByteBufferTest, copiesShareAnArrayAndDuplicatesHaveTheirOwn)
{
    typename TestFixture::Over source("abcdef", TestFixture::BIG), other("xy");
    source.buffer.setPosition(2);
    source.buffer.setLimit(4);
    auto first = source.buffer.duplicate(true, 0);
    const auto wider = source.buffer.duplicate(false, 9);
    EXPECT_TRUE(first->equals(source.buffer) && first->isReadOnly());
    EXPECT_EQ(wider->getPosition() + wider->getLimit(), 6u);
    EXPECT_EQ(wider->getOrder(), TestFixture::BIG);
    EXPECT_THROW(source.buffer.duplicate(false, 5), RangeErrorException);
    const auto slice = source.buffer.slice();
    slice->put('C');
    EXPECT_EQ(source.text, "abCdef");
    EXPECT_EQ(slice->getCapacity() + slice->remaining(), 3u);
    EXPECT_TRUE(first->slice()->isReadOnly());

    const auto copy = makeReference<TypeParam>(*first);
    TypeParam third(0u, TestFixture::LITTLE, false), keeper(third);
    third = *copy;
    first = nullptr;
    signed char* const bytes = reinterpret_cast<signed char*>(other.text.data());
    copy->setBuffer(bytes, 2, TestFixture::BIG, false);
    EXPECT_TRUE(copy->equals(other.buffer));
    EXPECT_EQ(third.get(5u), 'f') << "the array goes with its last buffer";
    EXPECT_THROW(third.setBuffer(bytes, 2, TestFixture::MIXED, true),
                 UnsupportedOperationException);
    EXPECT_TRUE(third.equals(other.buffer) && third.getOrder() == TestFixture::BIG);
}

TYPED_TEST(ByteBufferTest, fillsFromStreamsAndEmptiesIntoThem)
{
    TypeParam buffer(7u, TestFixture::LITTLE, false);
    const auto in = makeReference<PieceStream>("abcdefghi", 3u);
    EXPECT_EQ(buffer.readFrom(in.get()), 3u);
    EXPECT_EQ(buffer.readFully(in.get()), 4u);
    buffer.flip();
    buffer.setPosition(2);
    const auto copied = makeReference<ByteBuffer>(4u, ORV_ENDIAN_LITTLE, false);
    const auto out = makeReference<ByteBufferOutputStream>(copied.get());
    EXPECT_EQ(buffer.writeTo(out.get()) + buffer.writeTo(out.get()), 5u);
    EXPECT_EQ(out->Overflowed(), 1);
    copied->flip();
    EXPECT_EQ(readOnce(*makeReference<ByteBufferInputStream>(copied.get()), 9), "cdef");
    EXPECT_EQ(readOnce(*makeReference<ByteBufferInputStream>(copied.get()), 0), "|-1");
    buffer.clear();
    EXPECT_EQ(buffer.readFully(in.get()), 2u);
    EXPECT_EQ(buffer.getPosition(), 2u);
}

} // namespace
} // namespace orv::io::test
