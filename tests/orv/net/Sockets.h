#pragma once

#include "orv/net/SocketFunctions.h"
#include "tests/support/Loopback.h"
#include "tests/support/Sleeper.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

/// \file
/// Sockets of the library between a test and itself. Where there is a flat function it is used, so
/// that the tests prove it too.

namespace orv::net::test {

using namespace orv::test;

struct Destroy {
    void operator()(TcpSocket2* socket) const { OrvNetTcpSocketStaticDestroy(&socket); }
};
template <class Socket>
using Owned = std::unique_ptr<Socket, Destroy>;

inline Owned<TcpClientSocket2> newClient(std::int32_t family = 2)
{
    TcpClientSocket2* made = nullptr;
    EXPECT_EQ(OrvNetTcpClientSocketStaticCreate(family, 1, 6, &made), ORV_E_SOCKET_OK);
    return Owned<TcpClientSocket2>(made);
}

inline Owned<TcpServerSocket2> newServer()
{
    TcpServerSocket2* made = nullptr;
    EXPECT_EQ(OrvNetTcpServerSocketStaticCreate(0, 1, 6, &made), ORV_E_SOCKET_OK);
    return Owned<TcpServerSocket2>(made);
}

/// One of the two lists of a server as text.
template <auto print>
std::string listText(TcpServerSocket2& server)
{
    char text[2000];
    std::uint32_t size = sizeof text;
    EXPECT_EQ(print(&server, text, &size), ORV_E_SOCKET_OK);
    EXPECT_EQ(size, std::string(text).size() + 1);
    return text;
}
inline constexpr auto boundText = listText<OrvNetTcpServerSocketBoundListAddressesDiagnosticStrA>;
inline constexpr auto bindText = listText<OrvNetTcpServerSocketBindListAddressesDiagnosticStrA>;

/// Binds to the addresses of the bind list, listens, and fills the bound list.
inline void listen(TcpServerSocket2& server)
{
    EXPECT_EQ(OrvNetTcpServerSocketBind(&server), ORV_E_SOCKET_OK);
    EXPECT_EQ(OrvNetTcpServerSocketListen(&server, 0), ORV_E_SOCKET_OK);
    EXPECT_EQ(OrvNetTcpServerSocketSaveBoundAddresses(&server), ORV_E_SOCKET_OK);
}

/// A server that listens on the wildcard addresses at `port`, or at ports that the system gave; the
/// last address is IPv4.
inline Owned<TcpServerSocket2> listeningServer(std::uint16_t port = 0)
{
    Owned<TcpServerSocket2> server = newServer();
    EXPECT_EQ(OrvNetTcpServerSocketBindListAddAddrAny(server.get(), port), ORV_E_SOCKET_OK);
    listen(*server);
    return server;
}

/// The port of the last bound address.
inline std::uint16_t lastPort(TcpServerSocket2& server)
{
    const std::string text = boundText(server);
    return static_cast<std::uint16_t>(std::atoi(text.substr(text.rfind(':') + 1).c_str()));
}

/// Accepts one connection; null with the result where that fails.
inline Owned<TcpWorkerSocket2> acceptOne(TcpServerSocket2& server,
                                         ENUM_ORV_E_SOCKET expected = ORV_E_SOCKET_OK)
{
    TcpWorkerSocket2* accepted = nullptr;
    EXPECT_EQ(OrvNetTcpServerSocketAccept(&server, &accepted), expected);
    return Owned<TcpWorkerSocket2>(accepted);
}

inline ENUM_ORV_E_SOCKET connectTo(TcpClientSocket2& client, std::uint16_t port,
                                   std::uint16_t family = 2)
{
    const orv_sockaddr_union peer = loopback(port, family);
    return OrvNetTcpClientSocketConnect(&client, &peer, orvcore::sizeOfAddress(family));
}

/// A client and the worker at the other end.
struct Connection {
    Connection() : client(newClient())
    {
        const Owned<TcpServerSocket2> server = listeningServer();
        EXPECT_EQ(connectTo(*client, lastPort(*server)), ORV_E_SOCKET_OK);
        worker = acceptOne(*server);
    }

    Owned<TcpClientSocket2> client;
    Owned<TcpWorkerSocket2> worker;
};

/// What one recv() gives, its result behind "!" where it fails.
inline std::string received(TcpWorkerSocket2& socket, std::size_t size = 100)
{
    std::string bytes(size, '?');
    std::int64_t done = -7;
    const auto result = OrvNetTcpWorkerSocketRecv(&socket, bytes.data(), size, 0, &done);
    if (result == ORV_E_SOCKET_OK) return bytes.substr(0, static_cast<std::size_t>(done));
    const String text(ORVGetDescriptionFromORV_E_SOCKET(result));
    return std::string("!") + text.substring(0, text.indexOf(u' ')).getBytes();
}

inline void sendAll(TcpWorkerSocket2& socket, std::string bytes)
{
    std::int64_t done = 0;
    ASSERT_EQ(OrvNetTcpWorkerSocketSend(&socket, bytes.data(), bytes.size(), 0, &done),
              ORV_E_SOCKET_OK);
    ASSERT_EQ(done, static_cast<std::int64_t>(bytes.size()));
}

} // namespace orv::net::test
