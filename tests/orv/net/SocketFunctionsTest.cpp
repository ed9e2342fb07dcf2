#include "orv/net/SocketFunctions.h"

#include "orv/Exception.h"
#include "orv/GlobalLock.h"
#include "orv/Library.h"
#include "orv/sync/LockObject.h"
#include "tests/orv/net/Sockets.h"

#include <string>
#include <tuple>
#include <type_traits>

#include <netdb.h>
#include <sys/time.h>

namespace orv::net::test {
namespace {

/// The arguments, by number, that `function` takes although they are null; the others are `good`.
template <class... Types>
std::string nullsTaken(ENUM_ORV_E_SOCKET (*function)(Types...), std::type_identity_t<Types>... good)
{
    std::string taken;
    for (std::size_t null = 0; null < sizeof...(Types); ++null) {
        std::tuple<Types...> arguments{good...};
        std::size_t place = 0;
        const auto clears = [&](auto& argument) {
            if constexpr (std::is_pointer_v<std::remove_reference_t<decltype(argument)>>) {
                if (place++ == null) return std::exchange(argument, nullptr) != nullptr;
            } else {
                ++place;
            }
            return false;
        };
        bool cleared = false;
        std::apply([&](auto&... each) { ((cleared = clears(each) || cleared), ...); }, arguments);
        if (cleared && std::apply(function, arguments) != ORV_E_SOCKET_EINVAL) {
            taken += std::to_string(null) + " ";
        }
    }
    return taken;
}

TEST(SocketFunctions, refuseNullPointers)
{
    Connection connection;
    const auto owner = listeningServer();
    TcpClientSocket2* client = connection.client.get();
    TcpWorkerSocket2* worker = connection.worker.get();
    TcpServerSocket2* server = owner.get();
    TcpSocket2* base = client;
    orv_sockaddr_union a = loopback(1);
    addrinfo hints{};
    char text[8] = "unread";
    signed char bytes[16];
    std::int16_t truth = 7;
    std::int32_t n = 4, m = 0;
    std::uint16_t port = 0;
    std::uint32_t size = sizeof text, none = 0;
    std::int64_t done = 0;
    std::uint64_t room = sizeof bytes;
    timeval now{0, 0};
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketClose, base), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketShutdownInput, base), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketShutdownOutput, base), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketShutdownBoth, base), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketStaticDestroy, &base), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketStaticGetVersion, &n, &m), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpSocketStaticGetaddrinfo, "::1", 1, &hints, 0, &a), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketStaticCreate, 2, 1, 6, &client), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketBind, client, &a, 16), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketConnect, client, &a, 16), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketGetLocalAddress, client, &a, &n), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketSend, client, text, 1, 0, &done), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketRecv, client, text, 1, 0, &done), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketGetsockopt, client, 0xFFFF, 4, text, &n), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketSetsockopt, client, 0xFFFF, 4, text, 4), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpWorkerSocketSend, worker, text, 1, 0, &done), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpWorkerSocketRecv, worker, text, 1, 0, &done), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpWorkerSocketGetsockopt, worker, 0xFFFF, 4, text, &n), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpWorkerSocketSetsockopt, worker, 0xFFFF, 4, text, 4), "");
    // Without a time limit nothing would end the wait for nothing.
    EXPECT_EQ(nullsTaken(OrvNetTcpWorkerSocketStaticSelect, nullptr, &none, nullptr, &none, nullptr,
                         &none, &now, &n),
              "");
    EXPECT_EQ(nullsTaken(OrvNetTcpClientSocketStaticSelect, nullptr, &none, nullptr, &none, nullptr,
                         &none, &now, &n),
              "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketStaticCreate, 0, 1, 6, &server), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketBindListAddAddrAny, server, 1), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketBindListAddAddrInfo, server, "::1", nullptr, 1), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketBindListClear, server), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketBindListSaveOneForNamedPipeReply, server), "");
    for (const auto& print : {OrvNetTcpServerSocketBindListAddressesDiagnosticStrA,
                              OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA}) {
        EXPECT_EQ(nullsTaken(print, server, text, &size), "");
    }
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketBind, server), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketListen, server, 1), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketSaveBoundAddresses, server), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketAccept, server, &worker), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketAcceptSocket, server, &room), "");
    EXPECT_EQ(nullsTaken(OrvNetTcpServerSocketGetBoundAddress, server, 0, bytes, &room), "");
    const auto portOf = OrvNetInetSocketAddressStaticGetPortHostOrderFromTcpServiceName;
    EXPECT_EQ(nullsTaken(portOf, "http", &port), "");
    EXPECT_EQ(nullsTaken(OrvNetInetSocketAddressGetDiagnosticStr, &a, text, &size), "");
    EXPECT_EQ(nullsTaken(OrvNetInetAddressIsAddressAny, &a, &truth), "");
    EXPECT_EQ(nullsTaken(OrvNetInetAddressIsAddressLoopback, &a, &truth), "");
    EXPECT_EQ(nullsTaken(OrvNetInetAddressIsAddressNone, &a, &truth), "");
    size = sizeof text;
    EXPECT_EQ(nullsTaken(OrvNetInetAddressGetAddressStr, &a, text, &size), "");
    EXPECT_EQ(OrvNetTcpSocketGetId(nullptr), 0u);
    EXPECT_EQ(truth, 0);
    TcpSocket2* nothing = nullptr;
    EXPECT_EQ(OrvNetTcpSocketStaticDestroy(&nothing), ORV_E_SOCKET_OK);
}

TEST(SocketFunctions, askAddressesByTheirFamily)
{
    orv_sockaddr_union v4 = loopback(80);
    orv_sockaddr_union v6 = loopback(80, 23);
    orv_sockaddr_union odd = v4;
    odd.family = 1;
    std::int16_t truth = 0;
    EXPECT_EQ(OrvNetInetAddressIsAddressLoopback(&v6, &truth), ORV_E_SOCKET_OK);
    EXPECT_EQ(truth, 1);
    EXPECT_EQ(OrvNetInetAddressIsAddressAny(&odd, &truth), ORV_E_SOCKET_EINVAL);
    EXPECT_EQ(truth, 0);

    using Print = ENUM_ORV_E_SOCKET (*)(const orv_sockaddr_union*, char*, std::uint32_t*);
    using Row = std::tuple<Print, const orv_sockaddr_union*, std::string>;
    for (const auto& [print, address, expected] :
         {Row{&OrvNetInetAddressGetAddressStr, &v4, "127.0.0.1"},
          {&OrvNetInetAddressGetAddressStr, &v6, "::1"},
          {&OrvNetInetSocketAddressGetDiagnosticStr, &v4, "127.0.0.1:80"},
          {&OrvNetInetSocketAddressGetDiagnosticStr, &v6, "[::1]:80"}}) {
        char text[20] = "?";
        const auto length = static_cast<std::uint32_t>(expected.size());
        std::uint32_t size = 0;
        EXPECT_EQ(print(address, text, &size), ORV_E_SOCKET_EFAULT);
        EXPECT_EQ(text[0], '?') << "no room, not even for the end";
        size = length;
        EXPECT_EQ(print(address, text, &size), ORV_E_SOCKET_EFAULT) << "one byte short";
        EXPECT_EQ(size, 0u);
        EXPECT_STREQ(text, "");
        size = length + 1;
        EXPECT_EQ(print(address, text, &size), ORV_E_SOCKET_OK);
        EXPECT_EQ(text, expected);
        EXPECT_EQ(size, length + 1);
        size = sizeof text;
        EXPECT_EQ(print(&odd, text, &size), ORV_E_SOCKET_EINVAL);
        EXPECT_STREQ(text, "");
    }
}

TEST(Library, endsTheSocketsWithItself)
{
    EXPECT_EQ(OrvNetTcpSocketStaticInit(), ORV_E_SOCKET_OK);
    EXPECT_EQ(ORVCLLibInit(), S_OK);
    EXPECT_EQ(ORVCLLibUninit(), S_OK);
    ASSERT_NE(g_pGlobalLock, nullptr) << "the library is started and ended once";
    EXPECT_EQ(ORVCLLibUninit(), S_OK);
    EXPECT_EQ(g_pGlobalLock, nullptr);
    EXPECT_EQ(orvcore::stopSockets(), orvcore::SOCKET_NOT_INITIALISED) << "they were stopped";
    EXPECT_EQ(ORVCLLibUninit(), E_FAIL) << "once too often";
    EXPECT_EQ(ORVCLLibInit(), S_OK);

    // When somebody else has stopped them, the end fails half-way and keeps the lock.
    EXPECT_EQ(OrvNetTcpSocketStaticInit(), ORV_E_SOCKET_OK);
    EXPECT_EQ(orvcore::stopSockets(), 0u);
    sync::LockObject* const kept = g_pGlobalLock;
    EXPECT_EQ(ORVCLLibUninit(), E_FAIL);
    EXPECT_EQ(g_pGlobalLock, kept);
    EXPECT_EQ(TcpSocket2::uninit(), ORV_E_SOCKET_NOTINITIALISED);
    std::uint16_t version = 0;
    EXPECT_EQ(orvcore::startSockets(&version), 0u);
    EXPECT_EQ(ORVCLLibInit(), S_OK);
    delete kept;
}

} // namespace
} // namespace orv::net::test
