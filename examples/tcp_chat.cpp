// Two ends of a connection talk through the transport that is registered as Tessaly.Transport.TCP.
// A transport of another make and its properties is all it would take to talk over something else.

#include <orv/Exception>
#include <orv/Reference>
#include <orv/String>
#include <orv/io/ByteBuffer>
#include <orv/net/Transport>
#include <orv/util/PropertySet>

#include <cstdio>
#include <thread>

using namespace orv;
using io::ByteBuffer;
using io::IChannel;

namespace {

void say(IChannel& channel, const char* text)
{
    const auto buffer = makeReference<ByteBuffer>(256u, ORV_ENDIAN_BIG, false);
    const String line(text);
    buffer->put(reinterpret_cast<const signed char*>(line.getBytes()),
                static_cast<std::uint32_t>(line.getLength()));
    buffer->flip();
    channel.write(*buffer);
}

/// What has come, which of so short a text is all of it; empty at the end.
String hear(IChannel& channel)
{
    const auto buffer = makeReference<ByteBuffer>(256u, ORV_ENDIAN_BIG, false);
    const int count = channel.read(*buffer);
    String text;
    for (int i = 0; i < count; ++i) {
        text.append(static_cast<char16_t>(buffer->get(static_cast<std::uint32_t>(i))));
    }
    return text;
}

/// Answers until the caller hangs up.
void answer(IChannel& channel)
{
    for (String heard = hear(channel); heard.getLength() > 0; heard = hear(channel)) {
        std::printf("heard: %s\n", heard.getBytes());
        say(channel, heard.equals(u"Ready?") ? "Ready." : "Bye.");
    }
}

} // namespace

int main()
{
    try {
        const auto transport = net::Transport::get(u"Tessaly.Transport.TCP");
        const auto properties = makeReference<util::PropertySet>();
        properties->set(u"host", u"127.0.0.1");
        properties->set(u"port", u"0"); // any free one, which the acceptor tells as "localPort"
        properties->set(u"timeout", u"10000");
        const auto acceptor = transport->createAcceptor(*properties);
        std::thread host([&] { answer(*acceptor->accept()); });

        properties->set(u"port", properties->get(u"localPort"));
        auto channel = transport->createConnector(*properties)->connect();
        for (const char* text : {"Ready?", "That was all."}) {
            say(*channel, text);
            std::printf("answer: %s\n", hear(*channel).getBytes());
        }
        channel = nullptr; // hangs up
        host.join();
    } catch (const Exception& exception) {
        std::printf("failed: 0x%08X\n", static_cast<unsigned>(exception.getResult()));
        return 1;
    }
    return 0;
}
