#include "orv/net/TcpClientSocket2.h"

#include "orv/net/internal/SocketResult.h"

namespace orv::net {

using internal::resultOf;
using internal::withoutException;
using orvcore::SocketHold;

TcpClientSocket2::~TcpClientSocket2() = default;

ENUM_ORV_E_SOCKET TcpClientSocket2::createTcpClientSocket2(std::int32_t family, std::int32_t type,
                                                           std::int32_t protocol,
                                                           TcpClientSocket2** out)
{
    if (out == nullptr) return ORV_E_SOCKET_EINVAL;
    *out = nullptr;
    const ENUM_ORV_E_SOCKET started = init();
    if (started != ORV_E_SOCKET_OK) return started;
    orvcore::NativeSocket socket = orvcore::NO_SOCKET;
    const auto error = orvcore::openSocket(family, type, protocol, &socket);
    if (error != 0) return resultOf(error);

    ENUM_ORV_E_SOCKET result = ORV_E_SOCKET_OK;
    const ENUM_ORV_E_SOCKET made = withoutException(ORV_E_SOCKET_EFAULT, [&] {
        *out = new TcpClientSocket2(socket, &result);
        return result;
    });
    if (*out == nullptr) orvcore::closeSocket(socket);
    return made;
}

ENUM_ORV_E_SOCKET TcpClientSocket2::bind(const orv_sockaddr_union* address, std::uint64_t length)
{
    if (address == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    return resultOf(
        orvcore::bindSocket(hold.socket(), address, static_cast<std::uint32_t>(length)));
}

ENUM_ORV_E_SOCKET TcpClientSocket2::connect(const orv_sockaddr_union* address, std::uint64_t length)
{
    if (address == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    const auto error =
        orvcore::connectSocket(hold.socket(), address, static_cast<std::uint32_t>(length));
    return getClosed() != 0 ? ORV_E_SOCKET_ENOTSOCK : resultOf(error);
}

ENUM_ORV_E_SOCKET TcpClientSocket2::getLocalAddress(orv_sockaddr_union* address,
                                                    std::int32_t* length)
{
    if (address == nullptr || length == nullptr) return ORV_E_SOCKET_EINVAL;
    const SocketHold hold(m_socket);
    if (getClosed() != 0 || !hold.isOpen()) return ORV_E_SOCKET_ENOTSOCK;
    return resultOf(orvcore::nameOfSocket(hold.socket(), address, length));
}

} // namespace orv::net
