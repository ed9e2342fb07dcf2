#include "orv/util/ByteBuffers.h"
#include "orv/util/CharBuffers.h"

#include "orv/Exceptions.h"
#include "orv/Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace orv::util {
namespace {

struct Chars {
    using Interface = IORVCharBuffer;
    using ReadOnly = ROCharBuffer;
    using ReadWrite = RWCharBuffer;
};
struct Bytes {
    using Interface = IORVByteBuffer;
    using ReadOnly = ROByteBuffer;
    using ReadWrite = RWByteBuffer;
};

/// Both families are one design over two kinds of element.
template <class Family>
class Buffers : public testing::Test {
protected:
    using Interface = typename Family::Interface;
    using Unit = typename Interface::Unit;
    using RO = typename Family::ReadOnly;
    using RW = typename Family::ReadWrite;

    static constexpr std::array<Unit, 5> HELLO{'h', 'e', 'l', 'l', 'o'};

    static bool holdsHello(const Unit* data)
    {
        return std::equal(HELLO.begin(), HELLO.end(), data);
    }
};

using Families = testing::Types<Chars, Bytes>;
TYPED_TEST_SUITE(Buffers, Families);

TYPED_TEST(Buffers, roomComesInGranulesOfSixteen)
{
    typename TestFixture::RW buffer(0);
    EXPECT_EQ(buffer.getData(), nullptr);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_NE(buffer.getWriteLock(1), nullptr);
    EXPECT_EQ(buffer.plainCapacity(), 16);
    EXPECT_EQ(buffer.ensureCapacity(16), buffer.getData());
    EXPECT_EQ(buffer.plainCapacity(), 16);
    buffer.ensureCapacity(17);
    EXPECT_EQ(buffer.plainCapacity(), 32);
    EXPECT_EQ(buffer.getLength(), 0);

    buffer.releaseWriteLock(17);
    buffer.freeExtra();
    EXPECT_EQ(buffer.plainCapacity(), 32) << "17 need them all";
    buffer.releaseWriteLock(16);
    buffer.releaseWriteLock(-1);
    EXPECT_EQ(buffer.getLength(), 16);
    buffer.freeExtra();
    EXPECT_EQ(buffer.plainCapacity(), 16);
    buffer.releaseWriteLock(0);
    buffer.freeExtra();
    EXPECT_EQ(buffer.plainCapacity(), 0);
    EXPECT_EQ(buffer.getData(), nullptr);
}

TYPED_TEST(Buffers, copyContentAndRoom)
{
    using Writable = typename TestFixture::RW;
    const Writable original(TestFixture::HELLO.data(), 5, 40);
    Writable assigned(100);
    assigned = original;
    const Writable copy(original);
    EXPECT_EQ(original.plainCapacity(), 48);
    EXPECT_EQ(copy.plainCapacity(), 48);
    EXPECT_EQ(assigned.plainCapacity(), 112) << "never shrinks";
    EXPECT_NE(copy.getData(), original.getData());
    for (const Writable* buffer : {&copy, &static_cast<const Writable&>(assigned)}) {
        EXPECT_EQ(buffer->getLength(), 5);
        EXPECT_TRUE(TestFixture::holdsHello(buffer->getData()));
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
    buffer.freeExtra();

    typename TestFixture::Interface& face = buffer;
    typename TestFixture::Unit unit{};
    auto *first = &unit, *second = &unit;
    EXPECT_EQ(face.GetWriteLock(1, &first), E_NOTIMPL);
    EXPECT_EQ(face.EnsureCapacity(1, &second), E_NOTIMPL);
    EXPECT_TRUE(first == nullptr && second == nullptr);
    EXPECT_EQ(face.ReleaseWriteLock(0), E_NOTIMPL);
}

TYPED_TEST(Buffers, theInterfaceTellsOfNoRoom)
{
    const auto buffer = makeReference<typename TestFixture::RW>();
    void* found = nullptr;
    ASSERT_EQ(buffer->QueryInterface(TestFixture::Interface::IID, &found), S_OK);
    const auto face = Reference<typename TestFixture::Interface>::adopt(
        static_cast<typename TestFixture::Interface*>(static_cast<IORVUnknown*>(found)));
    typename TestFixture::Unit unit{};
    typename TestFixture::Unit* units = &unit;
    EXPECT_EQ(face->IsWritable(), 1);
    EXPECT_EQ(face->EnsureCapacity(0x7FFFFFFF, &units), E_OUTOFMEMORY) << "rounding overflows";
    EXPECT_EQ(units, nullptr);
}

TEST(CompactCharBuffer, movesOutOfItsBlockWithAllItHolds)
{
    const Reference<RWCharBuffer> buffer(RWCharBuffer::createCompact(16));
    EXPECT_TRUE(buffer->isCompact());
    std::fill_n(buffer->getWriteLock(16), 16, u'x');
    const char16_t* const grown = buffer->ensureCapacity(17);
    EXPECT_FALSE(buffer->isCompact());
    EXPECT_EQ(std::count(grown, grown + 16, u'x'), 16) << "written, though not released yet";
}

} // namespace
} // namespace orv::util
