#include "orv/io/Channels.h"

#include "orv/Exceptions.h"
#include "orv/io/ByteBuffer.h"
#include "orv/io/IoStreamChannel.h"
#include "orv/io/LockingChannel.h"
#include "orv/io/ReadWriteChannel.h"
#include "tests/orv/io/Streams.h"

#include <thread>

namespace orv::io::test {
namespace {

constexpr std::uint32_t NOT_AVAILABLE = 0x80004007;

/// Some bytes and a buffer over them, from position 1 on.
struct Bytes {
    explicit Bytes(const char* content) : text(content) { buffer.setPosition(1); }
    std::string text;
    ByteBuffer buffer{reinterpret_cast<signed char*>(text.data()),
                      static_cast<unsigned>(text.size()), ORV_ENDIAN_LITTLE, false};
};

/// A channel over two streams, which give and take what is seen from outside.
struct Streams {
    Reference<PieceStream> in = makeReference<PieceStream>("hello", 3u);
    Reference<RecordingStream> out = makeReference<RecordingStream>();
    Reference<IChannel> channel = Channels::adaptStreams(in.get(), out.get());
};

struct Throwing : ::orv::quark::Implements<Object, IChannel> {
    int read(ByteBuffer&) override { throw ResultException(E_NOT_FOUND); }
    int write(ByteBuffer&) override { throw IoException(u"broken"); }
};

/// The component side of an object, whatever it is.
template <class Object>
Reference<quark::IORVChannel> componentOf(const Reference<Object>& object)
{
    void* found = nullptr;
    EXPECT_EQ(object->QueryInterface(quark::IORVChannel::IID, &found), S_OK);
    return Reference<quark::IORVChannel>::adopt(static_cast<quark::IORVChannel*>(found));
}

TEST(Channels, moveBuffersThroughStreams)
{
    const Streams streams;
    // The component's channel between two adapters carries the same.
    const auto quark = Channels::adaptQuarkChannel(componentOf(streams.channel).get());
    for (IChannel* side : {streams.channel.get(), quark.get()}) {
        streams.in->position = 0;
        streams.out->content.clear();
        Bytes bytes("0123456");
        ByteBuffer& buffer = bytes.buffer;
        EXPECT_EQ(side->read(buffer), 3);
        EXPECT_EQ(side->read(buffer), 2);
        EXPECT_EQ(bytes.text, "0hello6");
        EXPECT_EQ(side->read(buffer), -1);
        EXPECT_EQ(buffer.getPosition(), 5u) << "the end moves back";
        buffer.setPosition(2);
        EXPECT_EQ(side->write(buffer), 5);
        EXPECT_EQ(streams.out->content, "ello6");
        buffer.rewind();
        EXPECT_EQ(side->read(buffer), -1);
        EXPECT_EQ(buffer.getPosition(), 0xFFFFFFFF) << "also from 0, without a check";
        buffer.setPosition(6);
        streams.in->position = 0;
        EXPECT_EQ(side->read(buffer), 1) << "no more than there is room for";
    }
}

TEST(Channels, tellTheNameOfAnInheritableChannelOnly)
{
    const Streams streams;
    const auto nameless = makeReference<IoStreamChannel>(streams.in.get(), streams.out.get());
    EXPECT_EQ(codeThrownBy([&] { nameless->getInheritableName(); }), NOT_AVAILABLE);
    const auto component = componentOf(nameless);
    const auto adapt = [&] { Channels::adaptQuarkWithInheritance(component.get()); };
    EXPECT_EQ(codeThrownBy(adapt), NOT_AVAILABLE);

    const auto named = Channels::adaptStreams(streams.in.get(), streams.out.get(), u"socket=7");
    EXPECT_EQ(named->getInheritableName(), u"socket=7");
    const auto quark = Channels::adaptQuarkWithInheritance(componentOf(named).get());
    EXPECT_EQ(quark->getInheritableName(), u"socket=7");

    String name(u"before");
    const auto joined = makeReference<ReadWriteChannel>(named.get(), named.get());
    EXPECT_EQ(componentOf(joined)->GetInheritableName(&name), E_NOT_AVAILABLE);
    EXPECT_EQ(name, u"before");
}

TEST(ReadWriteChannel, joinsTwoSidesAndLetsNoExceptionOut)
{
    const Streams streams;
    const auto throwing = makeReference<Throwing>();
    const auto reading = makeReference<ReadWriteChannel>(streams.channel.get(), throwing.get());
    Bytes fill("012");
    EXPECT_EQ(reading->read(fill.buffer), 2);
    EXPECT_EQ(thrownBy([&] { reading->write(fill.buffer); }), u"broken");

    signed char bytes[4] = {};
    std::int32_t n = 4;
    EXPECT_EQ(componentOf(reading)->Read(bytes, &n), S_OK);
    EXPECT_EQ(n, 3);
    EXPECT_EQ(std::string(bytes, bytes + 3), "llo");
    EXPECT_EQ(componentOf(reading)->Read(bytes, &n), S_OK);
    EXPECT_EQ(n, -1) << "the end of the stream";
    EXPECT_EQ(componentOf(reading)->Read(bytes, &n), E_INVALIDARG);
    const auto writing =
        componentOf(makeReference<ReadWriteChannel>(throwing.get(), streams.channel.get()));
    n = 2;
    EXPECT_EQ(writing->Write(bytes, &n), S_OK);
    EXPECT_EQ(streams.out->content, "ll");
    EXPECT_EQ(writing->Read(bytes, &n), E_NOT_FOUND);
    EXPECT_EQ(n, 2) << "left alone";
    const auto quark = Channels::adaptQuarkChannel(writing.get());
    EXPECT_EQ(codeThrownBy([&] { quark->read(fill.buffer); }), 0x80070002);
}

TEST(LockingChannel, locksOnlyByItsBrackets)
{
    const Streams streams;
    const auto channel = makeReference<LockingChannel>(streams.channel.get(), "exchange");
    Bytes fill("0123456");
    const auto lockedElsewhere = [&] {
        bool locked = false;
        std::thread([&] {
            locked = channel->tryWait();
            channel->read(fill.buffer);
            if (locked) channel->signal();
        }).join();
        return locked;
    };
    channel->wait();
    EXPECT_FALSE(lockedElsewhere());
    EXPECT_EQ(fill.text, "0hel456") << "read without the lock";
    channel->signal();
    EXPECT_TRUE(lockedElsewhere());
}

} // namespace
} // namespace orv::io::test
