#include "orv/net/TcpServerSocket2.h"

#include "tests/orv/net/Sockets.h"

#include <chrono>
#include <filesystem>
#include <thread>
#include <vector>

namespace orv::net::test {
namespace {

TEST(TcpServerSocket2, listensOnBothFamiliesAtOnePort)
{
    if (!hasIpv6()) GTEST_SKIP() << "this machine has no IPv6";
    const std::uint16_t port = lastPort(*listeningServer());
    const Owned<TcpServerSocket2> server = listeningServer(port);
    const std::string both = "[::]:" + std::to_string(port) + "; 0.0.0.0:" + std::to_string(port);
    EXPECT_EQ(bindText(*server), both);
    EXPECT_EQ(boundText(*server), both);
    for (const auto& [family, text] : {std::pair{2, u"127.0.0.1"}, std::pair{23, u"::1"}}) {
        const auto client = newClient(family);
        EXPECT_EQ(connectTo(*client, port, static_cast<std::uint16_t>(family)), ORV_E_SOCKET_OK);
        String peer;
        acceptOne(*server)->getRemoteAddress()->getAddressStr(peer);
        EXPECT_EQ(peer, text);
    }
    using Row = std::tuple<std::uint32_t, std::uint64_t, ENUM_ORV_E_SOCKET, std::uint64_t>;
    for (const auto& [index, room, result, size] : {Row{0, 16, ORV_E_SOCKET_OK, 16},
                                                    {1, 16, ORV_E_SOCKET_OK, 4},
                                                    {1, 3, ORV_E_SOCKET_EMSGSIZE, 0},
                                                    {2, 16, ORV_E_SOCKET_EADDRNOTAVAIL, 0}}) {
        signed char bytes[16];
        std::uint64_t length = room;
        EXPECT_EQ(OrvNetTcpServerSocketGetBoundAddress(server.get(), index, bytes, &length),
                  result);
        EXPECT_EQ(length, size);
    }
}

TEST(TcpServerSocket2, takesListsOfHosts)
{
    const Owned<TcpServerSocket2> server = newServer();
    using Row = std::tuple<const char*, const char*, std::uint16_t, const char*, ENUM_ORV_E_SOCKET>;
    for (const auto& [hosts, service, port, text, result] :
         {Row{"10.1.2.3,  ::1", nullptr, 80, "10.1.2.3:80; [::1]:80", ORV_E_SOCKET_OK},
          {"", nullptr, 80, "", ORV_E_SOCKET_EAI_NONAME},
          {"1.2.3.4,", nullptr, 80, "1.2.3.4:80", ORV_E_SOCKET_EAI_NONAME},
          {",no such host!,, 1.2.3.4", nullptr, 80, "1.2.3.4:80", ORV_E_SOCKET_OK},
          {" 1.2.3.4", nullptr, 80, "", ORV_E_SOCKET_EAI_NONAME},
          {"0.0.0.0,::,255.255.255.255", nullptr, 80, "", ORV_E_SOCKET_HOST_NOT_FOUND},
          {"::,1.2.3.4", nullptr, 80, "1.2.3.4:80", ORV_E_SOCKET_OK},
          {"1.2.3.4", "", 0, "", ORV_E_SOCKET_EINVAL},
          {"1.2.3.4", nullptr, 0, "", ORV_E_SOCKET_EINVAL},
          {"1.2.3.4", "no-such-service", 0, "", ORV_E_SOCKET_NO_DATA}}) {
        SCOPED_TRACE(hosts);
        EXPECT_EQ(OrvNetTcpServerSocketBindListAddAddrInfo(server.get(), hosts, service, port),
                  result);
        EXPECT_EQ(bindText(*server), text);
        EXPECT_EQ(OrvNetTcpServerSocketBindListClear(server.get()), ORV_E_SOCKET_OK);
    }
    EXPECT_NE(server->bindListAddAddrInfo(std::string(10'000, 'a').c_str(), nullptr, 80),
              ORV_E_SOCKET_OK);
    if (std::filesystem::exists("/etc/services")) {
        EXPECT_EQ(server->bindListAddAddrInfo("1.2.3.4", "http", 0), ORV_E_SOCKET_OK);
        EXPECT_EQ(bindText(*server), "1.2.3.4:80");
    }
    std::uint16_t port = 1;
    const auto portOf = OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName;
    EXPECT_EQ(portOf("", &port), ORV_E_SOCKET_OK);
    EXPECT_EQ(port, 0);
}

TEST(TcpServerSocket2, hasTwentyPlaces)
{
    const Owned<TcpServerSocket2> server = newServer();
    std::string hosts = "10.0.0.1";
    for (int i = 2; i <= 19; ++i) hosts += ",10.0.0." + std::to_string(i);
    EXPECT_EQ(server->bindListAddAddrInfo(hosts.c_str(), nullptr, 1), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bindListAddAddrAny(1), ORV_E_SOCKET_EFAULT) << "room for one of the two";
    const std::string twenty = bindText(*server);
    EXPECT_TRUE(twenty.ends_with("10.0.0.19:1; [::]:1"));
    EXPECT_EQ(server->bindListAddAddrInfo("10.0.0.21", nullptr, 1), ORV_E_SOCKET_OK)
        << "the twenty-first is left out without a word";
    EXPECT_EQ(bindText(*server), twenty);
}

TEST(TcpServerSocket2, standsWhenOneAddressCouldBeBound)
{
    const Owned<TcpServerSocket2> blocker = listeningServer();
    const Owned<TcpServerSocket2> server = newServer();
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK) << "of nothing, nothing fails";
    EXPECT_EQ(server->bindListAddAddrInfo("127.0.0.1", nullptr, lastPort(*blocker)),
              ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_EADDRINUSE);
    EXPECT_EQ(OrvNetTcpSocketGetId(server.get()), 0u);
    acceptOne(*server, ORV_E_SOCKET_ENOTSOCK);

    EXPECT_EQ(server->bindListAddAddrAny(0), ORV_E_SOCKET_OK);
    listen(*server);
    const std::string bound = boundText(*server);
    EXPECT_EQ(bound.find("127.0.0.1"), std::string::npos);
    EXPECT_NE(bound.find("0.0.0.0:"), std::string::npos);
    EXPECT_NE(OrvNetTcpSocketGetId(server.get()), 0u);
    server->boundListClear();
    EXPECT_EQ(boundText(*server), "");
}

TEST(TcpServerSocket2, reportsTheOneAddressItWasToldToSave)
{
    for (const bool isOne : {true, false}) {
        const Owned<TcpServerSocket2> server = listeningServer();
        const std::string bound = boundText(*server);
        const std::string more = "; " + bound;
        server->bindListClear();
        const char* const hosts = isOne ? "10.1.2.3" : "10.1.2.3, 10.1.2.4";
        EXPECT_EQ(server->bindListAddAddrInfo(hosts, nullptr, 80), ORV_E_SOCKET_OK);
        EXPECT_EQ(OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply(server.get()),
                  ORV_E_SOCKET_OK);
        EXPECT_EQ(bindText(*server), "");
        EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
        const std::string saved = isOne ? "10.1.2.3:80" : bound + more;
        EXPECT_EQ(boundText(*server), saved) << "one replaces the list, of two none is saved";
        EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
        EXPECT_EQ(boundText(*server), saved + more) << "once";
    }
}

TEST(TcpServerSocket2, endsAllItsWaitersWhenAnotherThreadCloses)
{
    const std::ptrdiff_t before = openDescriptors();
    Owned<TcpServerSocket2> server = listeningServer();
    std::vector<std::jthread> waiters;
    for (int i = 0; i < 3; ++i) {
        waiters.push_back(sleeperIn([&] { acceptOne(*server, ORV_E_SOCKET_ENOTSOCK); }));
    }
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(OrvNetTcpSocketClose(server.get()), ORV_E_SOCKET_OK);
    waiters.clear();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(openDescriptors(), before);
    acceptOne(*server, ORV_E_SOCKET_ENOTSOCK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK);
    server.reset();
    EXPECT_EQ(openDescriptors(), before) << "what was bound since goes with the server";
}

TEST(TcpServerSocket2, givesEachConnectionToOneOfSeveralWaiters)
{
    const Owned<TcpServerSocket2> server = listeningServer();
    const std::uint16_t port = lastPort(*server);
    constexpr int connections = 60;
    std::atomic<int> taken{0};
    std::vector<std::jthread> waiters;
    for (int i = 0; i < 3; ++i) {
        waiters.emplace_back([&] {
            std::uint64_t socket = 0;
            while (OrvNetTcpServerSocketAcceptSocket(server.get(), &socket) == ORV_E_SOCKET_OK) {
                ++taken;
                orvcore::closeSocket(socket);
            }
        });
    }
    for (int i = 0; i < connections; ++i) {
        EXPECT_EQ(connectTo(*newClient(), port), ORV_E_SOCKET_OK);
    }
    EXPECT_TRUE(awaitTrue([&] { return taken == connections; })) << taken;
    EXPECT_EQ(OrvNetTcpSocketShutdownBoth(server.get()), ORV_E_SOCKET_OK) << "nobody gets in now";
    EXPECT_EQ(connectTo(*newClient(), port), ORV_E_SOCKET_ECONNREFUSED);
    waiters.clear();
    EXPECT_EQ(taken, connections);
}

} // namespace
} // namespace orv::net::test
