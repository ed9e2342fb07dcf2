#include "orv/net/TcpServerSocket2.h"

#include "platform/threads.h"
#include "tests/orv/net/Sockets.h"
#include "tests/support/Processes.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

#include <unistd.h>

namespace orv::net::test {
namespace {

/// Accepts one connection; null with the result where that fails.
Owned<TcpWorkerSocket2> acceptOne(TcpServerSocket2& server,
                                  ENUM_ORV_E_SOCKET expected = ORV_E_SOCKET_OK)
{
    TcpWorkerSocket2* out = nullptr;
    EXPECT_EQ(server.accept(&out), expected);
    return Owned<TcpWorkerSocket2>(out);
}

TEST(TcpServerSocket2, listensOnBothFamiliesAtOnePort)
{
    if (!hasIpv6()) GTEST_SKIP() << "this machine has no IPv6";
    const std::uint16_t port = lastPort(*listeningServer());
    Owned<TcpServerSocket2> server = newServer();
    EXPECT_EQ(server->bindListAddAddrAny(port), ORV_E_SOCKET_OK);
    const std::string both = "[::]:" + std::to_string(port) + "; 0.0.0.0:" + std::to_string(port);
    EXPECT_EQ(bindText(*server), both);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->listen(5), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_EQ(boundText(*server), both);

    for (const auto& [family, text] : {std::pair{2, u"127.0.0.1"}, std::pair{23, u"::1"}}) {
        const auto client = newClient(family);
        EXPECT_EQ(connectTo(*client, port, static_cast<std::uint16_t>(family)), ORV_E_SOCKET_OK);
        const auto worker = acceptOne(*server);
        String peer;
        worker->getRemoteAddress()->getAddressStr(peer);
        EXPECT_EQ(peer, String(text));
    }
    signed char bytes[16];
    std::uint64_t length = 16;
    EXPECT_EQ(server->getBoundAddress(0, bytes, &length), ORV_E_SOCKET_OK);
    EXPECT_EQ(length, 16u);
    EXPECT_EQ(server->getBoundAddress(1, bytes, &length), ORV_E_SOCKET_OK);
    EXPECT_EQ(length, 4u);
    length = 3;
    EXPECT_EQ(server->getBoundAddress(1, bytes, &length), ORV_E_SOCKET_EMSGSIZE);
    EXPECT_EQ(length, 0u);
    length = 16;
    EXPECT_EQ(server->getBoundAddress(2, bytes, &length), ORV_E_SOCKET_EADDRNOTAVAIL);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(server->getBoundAddress(0, nullptr, &length), ORV_E_SOCKET_EINVAL);
}

TEST(TcpServerSocket2, takesListsOfHosts)
{
    using Row = std::tuple<const char*, const char*, ENUM_ORV_E_SOCKET>;
    for (const auto& [hosts, text, result] :
         {Row{"10.1.2.3,  ::1", "10.1.2.3:80; [::1]:80", ORV_E_SOCKET_OK},
          {"", "", ORV_E_SOCKET_EAI_NONAME},
          {"1.2.3.4,", "1.2.3.4:80", ORV_E_SOCKET_EAI_NONAME},
          {",no such host!,, 1.2.3.4", "1.2.3.4:80", ORV_E_SOCKET_OK},
          {" 1.2.3.4", "", ORV_E_SOCKET_EAI_NONAME},
          {"0.0.0.0,::,255.255.255.255", "", ORV_E_SOCKET_HOST_NOT_FOUND},
          {"::,1.2.3.4", "1.2.3.4:80", ORV_E_SOCKET_OK}}) {
        SCOPED_TRACE(hosts);
        Owned<TcpServerSocket2> server = newServer();
        EXPECT_EQ(server->bindListAddAddrInfo(hosts, nullptr, 80), result);
        EXPECT_EQ(bindText(*server), text);
    }
    Owned<TcpServerSocket2> server = newServer();
    std::uint16_t port = 1;
    const auto portOf = &InetSocketAddress::getPortHostOrderFromTcpServiceName;
    EXPECT_EQ(portOf("no-such-service", &port), ORV_E_SOCKET_NO_DATA);
    EXPECT_EQ(port, 0);
    if (std::filesystem::exists("/etc/services")) {
        EXPECT_EQ(server->bindListAddAddrInfo("1.2.3.4", "http", 0), ORV_E_SOCKET_OK);
        EXPECT_EQ(bindText(*server), "1.2.3.4:80");
    }
    EXPECT_EQ(server->bindListAddAddrInfo("1.2.3.4", "", 0), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(server->bindListAddAddrInfo("1.2.3.4", nullptr, 0), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(server->bindListAddAddrInfo("1.2.3.4", "no-such-service", 0), ORV_E_SOCKET_NO_DATA);
    EXPECT_EQ(server->bindListAddAddrInfo(nullptr, nullptr, 80), ORV_E_SOCKET_EINVAL);
    EXPECT_NE(server->bindListAddAddrInfo(std::string(10'000, 'a').c_str(), nullptr, 80),
              ORV_E_SOCKET_OK);
    server->bindListClear();
    EXPECT_EQ(bindText(*server), "");
}

TEST(TcpServerSocket2, hasTwentyPlaces)
{
    Owned<TcpServerSocket2> server = newServer();
    std::string hosts = "10.0.0.1";
    for (int i = 2; i <= 19; ++i) hosts += ",10.0.0." + std::to_string(i);
    EXPECT_EQ(server->bindListAddAddrInfo(hosts.c_str(), nullptr, 1), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bindListAddAddrAny(1), ORV_E_SOCKET_EFAULT) << "room for one of the two";
    const std::string twenty = bindText(*server);
    EXPECT_TRUE(twenty.ends_with("10.0.0.19:1; [::]:1"));
    EXPECT_EQ(server->bindListAddAddrInfo("10.0.0.21", nullptr, 1), ORV_E_SOCKET_OK)
        << "the twenty-first is left out without a word";
    EXPECT_EQ(bindText(*server), twenty);

    const auto size = static_cast<std::uint32_t>(twenty.size());
    std::string text(size + 1, '?');
    std::uint32_t room = size;
    EXPECT_EQ(server->bindListAddressesDiagnosticStrA(text.data(), &room), ORV_E_SOCKET_EFAULT);
    EXPECT_EQ(room, 0u);
    EXPECT_EQ(text[0], '\0');
    room = size + 1;
    EXPECT_EQ(server->bindListAddressesDiagnosticStrA(text.data(), &room), ORV_E_SOCKET_OK);
    EXPECT_EQ(room, size + 1) << "the terminator is written too";
    EXPECT_EQ(text.c_str(), twenty);
}

TEST(TcpServerSocket2, standsWhenOneAddressCouldBeBound)
{
    const Owned<TcpServerSocket2> blocker = listeningServer();
    const std::uint16_t taken = lastPort(*blocker);
    Owned<TcpServerSocket2> server = newServer();
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK) << "of nothing, nothing fails";
    EXPECT_EQ(server->bindListAddAddrInfo("127.0.0.1", nullptr, taken), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_EADDRINUSE);
    EXPECT_EQ(server->getId(), 0u);
    acceptOne(*server, ORV_E_SOCKET_ENOTSOCK);

    EXPECT_EQ(server->bindListAddAddrAny(0), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_EQ(boundText(*server).find("127.0.0.1"), std::string::npos);
    EXPECT_NE(boundText(*server).find("0.0.0.0:"), std::string::npos);
    EXPECT_NE(server->getId(), 0u);
    const std::string before = boundText(*server);
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_EQ(boundText(*server), before + "; " + before) << "it appends";
    server->boundListClear();
    EXPECT_EQ(boundText(*server), "");
}

TEST(TcpServerSocket2, reportsTheOneAddressItWasToldToSave)
{
    Owned<TcpServerSocket2> server = listeningServer();
    server->bindListClear();
    EXPECT_EQ(server->bindListAddAddrInfo("10.1.2.3", nullptr, 80), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bindListSaveOneForNamedPipeReply(), ORV_E_SOCKET_OK);
    EXPECT_EQ(bindText(*server), "");
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_EQ(boundText(*server), "10.1.2.3:80") << "in place of those it listens on";
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_NE(boundText(*server), "10.1.2.3:80") << "only once";

    Owned<TcpServerSocket2> two = newServer();
    EXPECT_EQ(two->bindListAddAddrInfo("10.1.2.3, 10.1.2.4", nullptr, 80), ORV_E_SOCKET_OK);
    EXPECT_EQ(two->bindListSaveOneForNamedPipeReply(), ORV_E_SOCKET_OK);
    EXPECT_EQ(two->saveBoundAddresses(), ORV_E_SOCKET_OK);
    EXPECT_EQ(boundText(*two), "") << "of two none is saved";
    EXPECT_EQ(bindText(*two), "");
}

TEST(TcpServerSocket2, endsAllItsWaitersWhenAnotherThreadCloses)
{
    const std::ptrdiff_t before = openDescriptors();
    Owned<TcpServerSocket2> server = listeningServer();
    std::atomic<std::uint32_t> ids[3] = {};
    std::vector<std::thread> waiters;
    for (auto& id : ids) {
        waiters.emplace_back([&] {
            id = orvcore::currentThreadId();
            acceptOne(*server, ORV_E_SOCKET_ENOTSOCK);
        });
    }
    for (auto& id : ids) {
        ASSERT_TRUE(awaitTrue([&] { return id != 0; }) && awaitSleepOf(id));
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(server->close(), ORV_E_SOCKET_OK);
    for (std::thread& waiter : waiters) waiter.join();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(openDescriptors(), before);
    acceptOne(*server, ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK);
    server.reset();
    EXPECT_EQ(openDescriptors(), before) << "what was bound since goes with the server";
}

TEST(TcpServerSocket2, givesEachConnectionToOneOfSeveralWaiters)
{
    Owned<TcpServerSocket2> server = listeningServer();
    const std::uint16_t port = lastPort(*server);
    constexpr int connections = 60;
    std::atomic<int> taken{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 3; ++i) {
        waiters.emplace_back([&] {
            std::uint64_t socket = 0;
            while (server->accept(&socket) == ORV_E_SOCKET_OK) {
                ++taken;
                orvcore::closeSocket(socket);
            }
        });
    }
    for (int i = 0; i < connections; ++i) {
        EXPECT_EQ(connectTo(*newClient(), port), ORV_E_SOCKET_OK);
    }
    EXPECT_TRUE(awaitTrue([&] { return taken == connections; })) << taken;
    EXPECT_EQ(server->shutdownBoth(), ORV_E_SOCKET_OK) << "nobody gets in any more";
    EXPECT_EQ(connectTo(*newClient(), port), ORV_E_SOCKET_ECONNREFUSED);
    for (std::thread& waiter : waiters) waiter.join();
    EXPECT_EQ(taken, connections);
}

} // namespace
} // namespace orv::net::test
