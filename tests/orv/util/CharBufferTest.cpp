#include "orv/util/ByteBuffers.h"
#include "orv/util/CharBuffers.h"

#include "orv/Exceptions.h"
#include "orv/Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orv::util {
namespace {

/// Both families, of characters and of bytes, are one design over two kinds of element.
template <class Family>
class Buffers : public testing::Test {
protected:
    using RO = typename Family::first_type;
    using RW = typename Family::second_type;
    using Unit = typename RW::Unit;

    static constexpr std::array<Unit, 5> HELLO{'h', 'e', 'l', 'l', 'o'};
};

using Families =
    testing::Types<std::pair<ROCharBuffer, RWCharBuffer>, std::pair<ROByteBuffer, RWByteBuffer>>;
TYPED_TEST_SUITE(Buffers, Families);

TYPED_TEST(Buffers, roomComesInGranulesOfSixteen)
{
    typename TestFixture::RW buffer(0);
    EXPECT_EQ(buffer.getData(), nullptr);
    EXPECT_NE(buffer.getWriteLock(1), nullptr);
    for (const auto& [wanted, room] : {std::pair{1, 16}, {16, 16}, {17, 32}, {5, 32}}) {
        EXPECT_NE(buffer.ensureCapacity(wanted), nullptr);
        EXPECT_EQ(buffer.plainCapacity(), room);
    }
    EXPECT_TRUE(buffer.isEmpty());
    for (const auto& [length, room] : {std::pair{17, 32}, {16, 16}, {-1, 16}, {0, 0}}) {
        buffer.releaseWriteLock(length);
        buffer.freeExtra();
        EXPECT_EQ(buffer.plainCapacity(), room) << length;
    }
    EXPECT_EQ(buffer.getData(), nullptr);

    typename TestFixture::Unit unit{};
    auto* units = &unit;
    EXPECT_EQ(buffer.IsWritable(), 1);
    EXPECT_EQ(buffer.EnsureCapacity(0x7FFFFFFF, &units), E_OUTOFMEMORY) << "rounding overflows";
    EXPECT_EQ(units, nullptr);
}

TYPED_TEST(Buffers, copyContentAndRoom)
{
    using Writable = typename TestFixture::RW;
    const auto& hello = TestFixture::HELLO;
    const Writable original(hello.data(), 5, 40);
    const Writable copy(original);
    Writable assigned(100);
    assigned = original;
    EXPECT_EQ(copy.plainCapacity(), 48);
    EXPECT_EQ(assigned.plainCapacity(), 112) << "never shrinks";
    for (const Writable* buffer : {&copy, &static_cast<const Writable&>(assigned)}) {
        EXPECT_NE(buffer->getData(), original.getData());
        EXPECT_EQ(buffer->getLength(), 5);
        EXPECT_TRUE(std::equal(hello.begin(), hello.end(), buffer->getData()));
    }
}

TYPED_TEST(Buffers, readOnlyOnesRefuseWriting)
{
    const auto* const data = TestFixture::HELLO.data();
    typename TestFixture::RO buffer(data, 5, 99);
    EXPECT_EQ(buffer.getLength(), 5);
    EXPECT_EQ(buffer.getReadLock(), data);
    EXPECT_FALSE(buffer.isWritable());
    EXPECT_THROW(buffer.getWriteLock(0), ReadOnlyException);
    EXPECT_THROW(buffer.ensureCapacity(0), ReadOnlyException);
    EXPECT_THROW(buffer.releaseWriteLock(0), ReadOnlyException);

    typename TestFixture::Unit unit{};
    auto *first = &unit, *second = &unit;
    EXPECT_EQ(buffer.GetWriteLock(1, &first), E_NOTIMPL);
    EXPECT_EQ(buffer.EnsureCapacity(1, &second), E_NOTIMPL);
    EXPECT_TRUE(first == nullptr && second == nullptr);
    EXPECT_EQ(buffer.ReleaseWriteLock(0), E_NOTIMPL);
}

TEST(ByteBuffer, answersAsItsInterface)
{
    const auto buffer = makeReference<RWByteBuffer>();
    void* found = nullptr;
    ASSERT_EQ(buffer->QueryInterface(IORVByteBuffer::IID, &found), S_OK);
    EXPECT_EQ(static_cast<IORVByteBuffer*>(found), buffer.get());
    buffer->Release();
}

} // namespace
} // namespace orv::util
