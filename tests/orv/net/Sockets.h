#pragma once

#include "orv/net/TcpClientSocket2.h"
#include "orv/net/TcpServerSocket2.h"
#include "tests/support/Loopback.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

/// \file
/// Sockets of the library between a test and itself.

namespace orv::net::test {

using namespace orv::test;

template <class Socket>
struct Destroy {
    void operator()(Socket* socket) const { TcpSocket2::destroyTcpSocket2(&socket); }
};
template <class Socket>
using Owned = std::unique_ptr<Socket, Destroy<Socket>>;

inline Owned<TcpClientSocket2> newClient(std::int32_t family = 2)
{
    TcpClientSocket2* made = nullptr;
    EXPECT_EQ(TcpClientSocket2::createTcpClientSocket2(family, 1, 6, &made), ORV_E_SOCKET_OK);
    return Owned<TcpClientSocket2>(made);
}

inline Owned<TcpServerSocket2> newServer()
{
    TcpServerSocket2* made = nullptr;
    EXPECT_EQ(TcpServerSocket2::createTcpServerSocket2(0, 1, 6, &made), ORV_E_SOCKET_OK);
    return Owned<TcpServerSocket2>(made);
}

inline std::string boundText(TcpServerSocket2& server)
{
    char text[2000];
    std::uint32_t size = sizeof text;
    EXPECT_EQ(server.boundListAddressesDiagnosticStrA(text, &size), ORV_E_SOCKET_OK);
    EXPECT_EQ(size, std::string(text).size() + 1);
    return text;
}

inline std::string bindText(TcpServerSocket2& server)
{
    char text[2000];
    std::uint32_t size = sizeof text;
    EXPECT_EQ(server.bindListAddressesDiagnosticStrA(text, &size), ORV_E_SOCKET_OK);
    return text;
}

/// A server that listens on the wildcard addresses at ports that the system gave; the last address
/// is IPv4.
inline Owned<TcpServerSocket2> listeningServer()
{
    Owned<TcpServerSocket2> server = newServer();
    EXPECT_EQ(server->bindListAddAddrAny(0), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->bind(), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->listen(0), ORV_E_SOCKET_OK);
    EXPECT_EQ(server->saveBoundAddresses(), ORV_E_SOCKET_OK);
    return server;
}

/// The port of the last bound address.
inline std::uint16_t lastPort(TcpServerSocket2& server)
{
    const std::string text = boundText(server);
    return static_cast<std::uint16_t>(std::atoi(text.substr(text.rfind(':') + 1).c_str()));
}

inline ENUM_ORV_E_SOCKET connectTo(TcpClientSocket2& client, std::uint16_t port,
                                   std::uint16_t family = 2)
{
    const orv_sockaddr_union peer = loopback(port, family);
    return client.connect(&peer, orvcore::sizeOfAddress(family));
}

/// A client and the worker at the other end.
struct Connection {
    Connection() : client(newClient())
    {
        const Owned<TcpServerSocket2> server = listeningServer();
        EXPECT_EQ(connectTo(*client, lastPort(*server)), ORV_E_SOCKET_OK);
        TcpWorkerSocket2* accepted = nullptr;
        EXPECT_EQ(server->accept(&accepted), ORV_E_SOCKET_OK);
        worker.reset(accepted);
    }

    Owned<TcpClientSocket2> client;
    Owned<TcpWorkerSocket2> worker;
};

/// What one recv() gives, its result behind "!" where it fails.
inline std::string received(TcpWorkerSocket2& socket, std::size_t size = 100)
{
    std::string bytes(size, '?');
    std::int64_t done = -7;
    const ENUM_ORV_E_SOCKET result = socket.recv(bytes.data(), size, 0, &done);
    if (result != ORV_E_SOCKET_OK) {
        const String text(ORVGetDescriptionFromORV_E_SOCKET(result));
        return std::string("!") + text.substring(0, text.indexOf(u' ')).getBytes();
    }
    return bytes.substr(0, static_cast<std::size_t>(done));
}

inline void sendAll(TcpWorkerSocket2& socket, std::string bytes)
{
    std::int64_t done = 0;
    ASSERT_EQ(socket.send(bytes.data(), bytes.size(), 0, &done), ORV_E_SOCKET_OK);
    ASSERT_EQ(done, static_cast<std::int64_t>(bytes.size()));
}

} // namespace orv::net::test
