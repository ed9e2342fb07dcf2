#pragma once

#include "platform/sockets.h"
#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>

/// \file
/// Sockets between a test and itself.

namespace orv::test {

/// 127.0.0.1 or ::1 with `port`, in host byte order.
inline orv_sockaddr_union loopback(std::uint16_t port, std::uint16_t family = orvcore::FAMILY_IPV4)
{
    orv_sockaddr_union address{};
    address.family = family;
    address.ipv4.port = static_cast<std::uint16_t>(port << 8 | port >> 8);
    if (family == orvcore::FAMILY_IPV4) {
        address.ipv4.address[0] = 127;
        address.ipv4.address[3] = 1;
    } else {
        address.ipv6.address[15] = 1;
    }
    return address;
}

/// The port of a socket address in host byte order.
inline std::uint16_t portOf(const orv_sockaddr_union& address)
{
    return static_cast<std::uint16_t>(address.ipv4.port << 8 | address.ipv4.port >> 8);
}

/// A native socket of the test's own, closed at the end of the scope.
class PlainSocket {
public:
    explicit PlainSocket(std::uint16_t family = orvcore::FAMILY_IPV4)
    {
        EXPECT_EQ(orvcore::openSocket(family, 1, 6, &m_socket), 0u);
    }
    ~PlainSocket() { close(); }
    PlainSocket(const PlainSocket&) = delete;
    PlainSocket& operator=(const PlainSocket&) = delete;

    std::uint64_t get() const noexcept { return m_socket; }
    void close()
    {
        if (m_socket != orvcore::NO_SOCKET) orvcore::closeSocket(m_socket);
        m_socket = orvcore::NO_SOCKET;
    }
    /// Gives the socket away.
    std::uint64_t release() { return std::exchange(m_socket, orvcore::NO_SOCKET); }

    /// Listens on the loopback address at a port that the system gives, and returns the port.
    std::uint16_t listen(std::uint16_t family = orvcore::FAMILY_IPV4)
    {
        const orv_sockaddr_union any = loopback(0, family);
        EXPECT_EQ(orvcore::bindListener(m_socket, &any, orvcore::sizeOfAddress(family)), 0u);
        EXPECT_EQ(orvcore::listenOnSocket(m_socket, 16), 0u);
        return port();
    }
    std::uint16_t port() const
    {
        orv_sockaddr_union local{};
        std::int32_t size = sizeof local;
        EXPECT_EQ(orvcore::nameOfSocket(m_socket, &local, &size), 0u);
        return portOf(local);
    }
    orvcore::SocketError connect(std::uint16_t port)
    {
        const orv_sockaddr_union peer = loopback(port);
        return orvcore::connectSocket(m_socket, &peer, sizeof peer.ipv4);
    }

private:
    std::uint64_t m_socket = orvcore::NO_SOCKET;
};

/// Makes the end of a socket, when it is closed, a reset to its peer.
inline void resetWhenClosed(std::uint64_t socket)
{
    const std::uint16_t lingering[] = {1, 0};
    EXPECT_EQ(orvcore::setSocketOption(socket, orvcore::LEVEL_SOCKET, orvcore::OPTION_LINGER,
                                       lingering, sizeof lingering),
              0u);
}

/// Waits for a connection to a listening socket and takes it.
inline std::uint64_t acceptFrom(const PlainSocket& listener)
{
    orvcore::SocketWait wait{listener.get(), orvcore::READY_TO_READ, 0};
    std::int32_t ready = 0;
    EXPECT_EQ(orvcore::waitForSockets(&wait, 1, orvcore::FOR_EVER, &ready), 0u);
    std::uint64_t accepted = orvcore::NO_SOCKET;
    EXPECT_EQ(orvcore::acceptSocket(listener.get(), &accepted, nullptr), 0u);
    return accepted;
}

/// A port of the loopback address at which nothing listens.
inline std::uint16_t closedPort()
{
    return PlainSocket().listen();
}

/// Whether this machine has IPv6; tests that need it skip themselves aloud.
inline bool hasIpv6()
{
    std::uint64_t socket = orvcore::NO_SOCKET;
    if (orvcore::openSocket(orvcore::FAMILY_IPV6, 1, 6, &socket) != 0) return false;
    const orv_sockaddr_union any = loopback(0, orvcore::FAMILY_IPV6);
    const bool bound = orvcore::bindListener(socket, &any, sizeof any.ipv6) == 0;
    orvcore::closeSocket(socket);
    return bound;
}

} // namespace orv::test
