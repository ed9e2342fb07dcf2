#include "orv/net/TcpWorkerSocket2.h"

#include "orv/net/internal/SocketResult.h"

namespace orv::net {

using internal::resultOf;
using internal::withoutException;
using orvcore::NO_SOCKET;
using orvcore::SocketHold;

namespace {

/// A connection that is gone needs no shutting down.
ENUM_ORV_E_SOCKET shutDown(const std::atomic<std::uint64_t>& socket, std::int32_t way)
{
    const SocketHold hold(socket);
    if (!hold.isOpen()) return ORV_E_SOCKET_OK;
    const ENUM_ORV_E_SOCKET result = resultOf(orvcore::shutDownSocket(hold.socket(), way));
    return result == ORV_E_SOCKET_ENOTCONN ? ORV_E_SOCKET_OK : result;
}

} // namespace

TcpWorkerSocket2::TcpWorkerSocket2(std::uint64_t socket, ENUM_ORV_E_SOCKET* error)
    : TcpSocket2(error), m_socket(socket)
{
}

TcpWorkerSocket2::TcpWorkerSocket2(std::uint64_t socket, const orv_sockaddr_union* remote,
                                   ENUM_ORV_E_SOCKET* error)
    : TcpWorkerSocket2(socket, error)
{
    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    const ENUM_ORV_E_SOCKET made = withoutException(ORV_E_SOCKET_ENOBUFS, [&] {
        m_remote = std::make_unique<InetSocketAddress>(remote, &result);
        return result;
    });
    if (made != ORV_E_SOCKET_OK) m_remote.reset();
    if (error != nullptr && *error == ORV_E_SOCKET_OK) *error = made;
}

TcpWorkerSocket2::~TcpWorkerSocket2()
{
    if (TcpSocket2::getClosed() != 0) return;
    TcpWorkerSocket2::shutdownOutput();
    TcpWorkerSocket2::close();
}

std::uint64_t TcpWorkerSocket2::getId()
{
    const std::uint64_t socket = m_socket;
    return socket == NO_SOCKET ? 0 : socket;
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::shutdownInput()
{
    const std::int32_t way = takeWayOfInput();
    return way == NO_WAY ? ORV_E_SOCKET_OK : shutDown(m_socket, way);
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::shutdownOutput()
{
    const std::int32_t way = takeWayOfOutput();
    return way == NO_WAY ? ORV_E_SOCKET_OK : shutDown(m_socket, way);
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::shutdownBoth()
{
    const std::int32_t way = takeWayOfBoth();
    return way == NO_WAY ? ORV_E_SOCKET_OK : shutDown(m_socket, way);
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::close()
{
    if (getClosed() != 0) return ORV_E_SOCKET_OK;
    setClosed();
    return resultOf(orvcore::closeSocket(m_socket.exchange(NO_SOCKET)));
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::getsockopt(std::int32_t level, std::int32_t option, char* value,
                                               std::int32_t* length)
{
    if (value == nullptr || length == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    return resultOf(orvcore::getSocketOption(hold.socket(), level, option, value, length));
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::setsockopt(std::int32_t level, std::int32_t option,
                                               const char* value, std::int32_t length)
{
    if (value == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    return resultOf(orvcore::setSocketOption(hold.socket(), level, option, value, length));
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::recv(char* buffer, std::uint64_t size, std::int32_t flags,
                                         std::int64_t* done)
{
    if (buffer == nullptr || done == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    const orvcore::SocketError error =
        orvcore::receiveBytes(hold.socket(), buffer, static_cast<std::uint32_t>(size), flags, done);
    if (*done > 0) return ORV_E_SOCKET_OK;
    // A close() in another thread looks like the end of the stream.
    return getClosed() != 0 ? ORV_E_SOCKET_ENOTSOCK : resultOf(error);
}

ENUM_ORV_E_SOCKET TcpWorkerSocket2::send(char* buffer, std::uint64_t size, std::int32_t flags,
                                         std::int64_t* done)
{
    if (buffer == nullptr || done == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    const orvcore::SocketError error =
        orvcore::sendBytes(hold.socket(), buffer, static_cast<std::uint32_t>(size), flags, done);
    if (*done > 0) return ORV_E_SOCKET_OK;
    return getClosed() != 0 ? ORV_E_SOCKET_ENOTSOCK : resultOf(error);
}

} // namespace orv::net
