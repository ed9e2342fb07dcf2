#include "orv/io/Channels.h"

#include "orv/io/ByteBuffer.h"
#include "orv/io/IoStreamChannel.h"
#include "orv/io/LockingChannel.h"
#include "orv/io/ReadWriteChannel.h"
#include "tests/orv/io/Streams.h"

#include <thread>

namespace orv::io::test {
namespace {

struct Throwing : ::orv::quark::Implements<Object, IChannel> {
    int read(ByteBuffer&) override { throw ResultException(E_NOT_FOUND); }
    int write(ByteBuffer&) override { throw IoException(u"broken"); }
};

/// Takes a Reference to what it is given, as a component may do.
struct Holding : IoStreamChannel {
    using IoStreamChannel::IoStreamChannel;
    Result GetInheritableName(util::ICharBuffer* name) override
    {
        const Reference<util::ICharBuffer> held(name);
        return IoStreamChannel::GetInheritableName(held.get());
    }
};

/// The component side of an object, whatever it is.
template <class Object>
Reference<quark::IORVChannel> componentOf(const Reference<Object>& object)
{
    void* found = nullptr;
    EXPECT_EQ(object->QueryInterface(quark::IORVChannel::IID, &found), S_OK);
    return Reference<quark::IORVChannel>::adopt(static_cast<quark::IORVChannel*>(found));
}

class ChannelsTest : public testing::Test {
protected:
    ~ChannelsTest() noexcept override = default;

    Reference<PieceStream> in = makeReference<PieceStream>("hello", 3u);
    Reference<RecordingStream> out = makeReference<RecordingStream>();
    Reference<IChannel> channel = Channels::adaptStreams(in.get(), out.get());
    std::string text = "0123456";
    ByteBuffer buffer{reinterpret_cast<signed char*>(text.data()), 7u, ORV_ENDIAN_LITTLE, false};
};

TEST_F(ChannelsTest, moveBuffersThroughStreams)
{
    // The component's channel between two adapters carries the same.
    const auto quark = Channels::adaptQuarkChannel(componentOf(channel).get());
    for (IChannel* side : {channel.get(), quark.get()}) {
        in->position = 0;
        out->content.clear();
        buffer.setPosition(1);
        buffer.setLimit(3);
        EXPECT_EQ(side->read(buffer), 2) << "no more than there is room for";
        buffer.setLimit(7);
        EXPECT_EQ(side->read(buffer), 3);
        EXPECT_EQ(text, "0hello6");
        EXPECT_EQ(side->read(buffer), -1);
        EXPECT_EQ(buffer.getPosition(), 5u) << "the end moves back";
        EXPECT_EQ(side->write(buffer), 2);
        EXPECT_EQ(out->content, "o6");
        buffer.rewind();
        EXPECT_EQ(side->read(buffer), -1);
        EXPECT_EQ(buffer.getPosition(), 0xFFFFFFFF) << "also from 0, without a check";
        buffer.rewind();
    }
}

TEST_F(ChannelsTest, tellTheNameOfAnInheritableChannelOnly)
{
    const auto adapted = [](const auto& object) {
        return Channels::adaptQuarkWithInheritance(componentOf(object).get());
    };
    const auto nameless = makeReference<IoStreamChannel>(in.get(), out.get());
    EXPECT_EQ(refusalOf([&] { nameless->getInheritableName(); }).first, E_NOT_AVAILABLE);
    EXPECT_EQ(refusalOf([&] { adapted(nameless); }).first, E_NOT_AVAILABLE);
    const auto named = makeReference<Holding>(in.get(), out.get(), u"socket=7");
    EXPECT_EQ(Channels::adaptStreams(in.get(), out.get(), u"x")->getInheritableName(), u"x");
    EXPECT_EQ(adapted(named)->getInheritableName(), u"socket=7");
    const auto joined = makeReference<ReadWriteChannel>(named.get(), named.get());
    EXPECT_EQ(refusalOf([&] { adapted(joined); }).first, E_NOT_AVAILABLE);
}

TEST_F(ChannelsTest, joinTwoSidesAndLetNoExceptionOut)
{
    const auto throwing = makeReference<Throwing>();
    const auto reading = makeReference<ReadWriteChannel>(channel.get(), throwing.get());
    EXPECT_THROW(reading->write(buffer), IoException);
    signed char bytes[4] = {};
    std::int32_t n = 4;
    EXPECT_EQ(componentOf(reading)->Read(bytes, &n), S_OK);
    EXPECT_EQ(std::string(bytes, bytes + n), "hel");
    n = -1;
    EXPECT_EQ(componentOf(reading)->Read(bytes, &n), E_INVALIDARG);

    const auto writing =
        componentOf(makeReference<ReadWriteChannel>(throwing.get(), channel.get()));
    n = 2;
    EXPECT_EQ(writing->Write(bytes, &n), S_OK);
    EXPECT_EQ(out->content, "he");
    EXPECT_EQ(writing->Read(bytes, &n), E_NOT_FOUND);
    EXPECT_EQ(n, 2) << "left alone";
    const auto quark = Channels::adaptQuarkChannel(writing.get());
    EXPECT_EQ(refusalOf([&] { quark->read(buffer); }).first, E_NOT_FOUND);
}

TEST_F(ChannelsTest, lockOnlyByTheirBrackets)
{
    const auto locking = makeReference<LockingChannel>(channel.get(), "exchange");
    const auto elsewhere = [](auto body) { std::thread(body).join(); };
    locking->wait();
    elsewhere([&] {
        EXPECT_FALSE(locking->tryWait());
        EXPECT_EQ(locking->read(buffer), 3) << "reading takes no lock";
    });
    locking->signal();
    elsewhere([&] {
        EXPECT_TRUE(locking->tryWait());
        locking->signal();
    });
}

} // namespace
} // namespace orv::io::test
