#include "orv/io/ByteBuffer.h"
#include "orv/net/SocketErrors.h"
#include "orv/net/Transport.h"
#include "tests/support/Loopback.h"
#include "tests/support/ScratchRegistry.h"
#include "tests/support/SignalStorm.h"
#include "tests/support/Sleeper.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <thread>
#include <vector>

namespace orv::net::test {
namespace {

using namespace orv::test;
using io::ByteBuffer;
using io::IChannel;
using util::PropertySet;

using Settings = std::map<std::u16string, std::u16string>;

/// The transport as a host finds it: registered in a store of the test's own, made by its name.
class TcpTransport : public testing::Test {
protected:
    TcpTransport()
    {
        EXPECT_EQ(ScratchRegistry::registerComponent(ORV_TCPTRANSPORT), S_OK);
        m_transport = Transport::get(u"Tessaly.Transport.TCP");
    }
    ~TcpTransport() noexcept override = default;

    static Reference<PropertySet> properties(const Settings& settings)
    {
        auto set = makeReference<PropertySet>();
        for (const auto& [name, value] : settings) set->set(name.c_str(), value.c_str());
        return set;
    }
    /// Listens on a free port of the loopback address, which `m_port` tells.
    Reference<IAcceptor> acceptor(Settings settings = {})
    {
        settings.insert({{u"host", u"127.0.0.1"}, {u"port", u"0"}});
        const auto set = properties(settings);
        auto made = m_transport->createAcceptor(*set);
        m_port = test::units(set->get(u"localPort"));
        return made;
    }
    Reference<IChannel> connect(Settings settings = {})
    {
        settings.insert({{u"host", u"127.0.0.1"}, {u"port", m_port}});
        return m_transport->createConnector(*properties(settings))->connect();
    }

    ScratchRegistry m_registry;
    Reference<ITransport> m_transport;
    std::u16string m_port;
};

std::string read(IChannel& channel)
{
    const auto buffer = makeReference<ByteBuffer>(1u << 16, ORV_ENDIAN_LITTLE, false);
    const int count = channel.read(*buffer);
    if (count < 0) return "(end)";
    buffer->flip();
    std::string text(static_cast<std::size_t>(count), '?');
    buffer->get(reinterpret_cast<signed char*>(text.data()), static_cast<std::uint32_t>(count));
    return text;
}

void write(IChannel& channel, std::string text)
{
    ByteBuffer bytes(reinterpret_cast<signed char*>(text.data()),
                     static_cast<std::uint32_t>(text.size()), ORV_ENDIAN_LITTLE, false);
    EXPECT_EQ(channel.write(bytes), static_cast<int>(text.size()));
}

TEST_F(TcpTransport, carriesAMebibyteThereAndBack)
{
    const auto listening = acceptor({{u"host", u""}}); // on all addresses
    const std::jthread echo = sleeperIn([&] {
        const auto channel = listening->accept();
        std::string piece;
        while ((piece = read(*channel)) != "(end)") write(*channel, piece);
    });
    std::string sent(1 << 20, 0);
    std::uint32_t state = 1;
    for (char& byte : sent) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    auto channel = connect();
    std::thread writer([&] { write(*channel, sent); });
    std::string came;
    while (came.size() < sent.size()) came += read(*channel);
    writer.join();
    EXPECT_TRUE(came == sent);
    channel = nullptr; // the echo reads its end
}

TEST_F(TcpTransport, tellsAPeerThatEndsFromOneThatGoes)
{
    PlainSocket listener;
    m_port = test::units(String::valueOf(std::uint32_t{listener.listen()}));
    auto channel = connect();
    std::uint64_t peer = acceptFrom(listener);
    orvcore::shutDownSocket(peer, 1);
    EXPECT_EQ(read(*channel), "(end)");
    write(*channel, "still heard");
    char bytes[20];
    std::int64_t count = 0;
    EXPECT_EQ(orvcore::receiveBytes(peer, bytes, sizeof bytes, 0, &count), 0u);
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)), "still heard");

    orvcore::closeSocket(peer);
    channel = connect();
    peer = acceptFrom(listener);
    resetWhenClosed(peer);
    orvcore::closeSocket(peer);
    EXPECT_EQ(resultOf([&] { read(*channel); }), ORV_E_SOCKET_ECONNRESET);
    EXPECT_EQ(resultOf([&] { write(*channel, "anybody there?"); }), ORV_E_SOCKET_ECONNRESET);
}

TEST_F(TcpTransport, endsEveryWaitAtItsLimit)
{
    const Settings soon{{u"timeout", u"50"}};
    const auto listening = acceptor({{u"acceptTimeout", u"50"}, {u"backlog", u"1"}});
    EXPECT_EQ(resultOf([&] { listening->accept(); }), ORV_E_SOCKET_ETIMEDOUT);
    const auto near = connect(soon);
    auto far = listening->accept();
    EXPECT_EQ(resultOf([&] { read(*near); }), ORV_E_SOCKET_ETIMEDOUT);
    write(*far, "late");
    EXPECT_EQ(read(*near), "late") << "the limit loses nothing";
    EXPECT_EQ(resultOf([&] { write(*near, std::string(64 << 20, 'x')); }), ORV_E_SOCKET_ETIMEDOUT);

    // A queue that is full lets connections wait; signals make the wait no longer.
    const SignalStorm storm;
    std::vector<Reference<IChannel>> queue;
    const Result full = resultOf([&] {
        while (queue.size() < 9) queue.push_back(connect(soon));
    });
    EXPECT_EQ(full, ORV_E_SOCKET_ETIMEDOUT);
    EXPECT_GE(queue.size(), 1u);
}

TEST_F(TcpTransport, refusesWhatCannotBeAndLeavesNothingOpen)
{
    const auto listening = acceptor();
    const std::u16string closed = String::valueOf(std::uint32_t{closedPort()}).getData();
    const struct {
        Settings settings;
        Result ofConnector, ofAcceptor;
    } rows[] = {
        {{{u"host", u"127.0.0.1"}}, E_NOT_FOUND, E_NOT_FOUND},
        {{{u"port", u"65536"}}, E_INVALIDARG, E_INVALIDARG},
        {{{u"port", u"80 "}}, E_INVALIDARG, E_INVALIDARG},
        {{{u"port", u"99999999999999999999"}}, E_INVALIDARG, E_INVALIDARG},
        {{{u"port", u"7"}, {u"timeout", u"2147483648"}}, E_INVALIDARG, E_INVALIDARG},
        {{{u"host", u"a.invalid"}, {u"port", closed}},
         ORV_E_SOCKET_EAI_NONAME,
         ORV_E_SOCKET_EAI_NONAME},
        {{{u"host", u"127.0.0.1"}, {u"port", closed}}, ORV_E_SOCKET_ECONNREFUSED, S_OK},
        {{{u"host", u"127.0.0.1"}, {u"port", m_port}}, S_OK, ORV_E_SOCKET_EADDRINUSE},
        {{{u"host", u"0.0.0.0"}, {u"port", u"0"}}, E_INVALIDARG, ORV_E_SOCKET_HOST_NOT_FOUND},
        {{{u"host", u"192.0.2.1"}, {u"port", u"0"}}, E_INVALIDARG, ORV_E_SOCKET_EADDRNOTAVAIL},
        {{{u"host", u"192.0.2.1,127.0.0.1"}, {u"port", u"0"}}, E_INVALIDARG, S_OK},
    };
    const auto before = openDescriptors();
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto set = properties(row.settings);
        EXPECT_EQ(resultOf([&] { m_transport->createConnector(*set)->connect(); }),
                  row.ofConnector);
        EXPECT_EQ(resultOf([&] { m_transport->createAcceptor(*set); }), row.ofAcceptor);
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_LT(resultOf([] { Transport::get(u"Tessaly.Transport.None"); }), 0);
}

} // namespace
} // namespace orv::net::test
