#include "orv/net/TcpServerSocket.h"

#include "orv/Exception.h"
#include "orv/net/TcpSocket2.h"
#include "orv/net/internal/NetworkOrder.h"
#include "orv/net/internal/SocketResult.h"

namespace orv::net {

namespace {

[[noreturn]] void throwFailure(const char16_t* text, ENUM_ORV_E_SOCKET result)
{
    throw Exception(String(text).append(ORVGetDescriptionFromORV_E_SOCKET(result)));
}

orvcore::SocketError bindAndListen(std::uint64_t socket, std::uint16_t port, std::int32_t backlog)
{
    orv_sockaddr_union any{};
    any.ipv4.family = orvcore::FAMILY_IPV4;
    any.ipv4.port = internal::toNetworkOrder(port);
    const auto error = orvcore::bindListener(socket, &any, sizeof any.ipv4);
    return error != 0 ? error : orvcore::listenOnSocket(socket, backlog);
}

std::uint64_t openListener(std::uint16_t port, std::int32_t backlog)
{
    const ENUM_ORV_E_SOCKET started = TcpSocket2::init();
    if (started != ORV_E_SOCKET_OK) {
        throwFailure(u"TcpServerSocket: Winsock failed to load ", started);
    }
    std::uint64_t socket = orvcore::NO_SOCKET;
    auto error = orvcore::openSocket(orvcore::FAMILY_IPV4, orvcore::TYPE_STREAM, 0, &socket);
    if (error == 0) error = bindAndListen(socket, port, backlog);
    if (error == 0) return socket;
    if (socket != orvcore::NO_SOCKET) orvcore::closeSocket(socket);
    throwFailure(u"TcpServerSocket: ", internal::resultOf(error));
}

[[noreturn]] void throwAcceptFailure(orvcore::SocketError error)
{
    throw Exception(
        String(u"TcpServerSocket::accept ").append(u"WSERROR ").append(String::valueOf(error)));
}

} // namespace

TcpServerSocket::TcpServerSocket(std::uint16_t port, std::int32_t backlog)
    : m_socket(openListener(port, backlog))
{
}

TcpServerSocket::~TcpServerSocket() noexcept(false)
{
    orvcore::closeSocket(m_socket);
}

Reference<TcpSocket> TcpServerSocket::accept()
{
    std::uint64_t accepted = orvcore::NO_SOCKET;
    // Where another thread takes the connection first there is nothing to take.
    auto error = orvcore::acceptSocket(m_socket, &accepted, nullptr);
    while (error == orvcore::SOCKET_WOULD_BLOCK) {
        orvcore::SocketWait wait{m_socket, orvcore::READY_TO_READ, 0};
        std::int32_t ready = 0;
        error = orvcore::waitForSockets(&wait, 1, orvcore::FOR_EVER, &ready);
        if (error == 0) error = orvcore::acceptSocket(m_socket, &accepted, nullptr);
    }
    if (error != 0) throwAcceptFailure(error);
    // The handle comes first: from there on the connection closes also where memory runs out.
    const Reference<TcpSocketHandle> handle = TcpSocket::makeHandle(accepted);
    return new TcpSocket(handle);
}

std::uint16_t TcpServerSocket::getLocalPort() const
{
    orv_sockaddr_union local{};
    std::int32_t size = sizeof local;
    static_cast<void>(orvcore::nameOfSocket(m_socket, &local, &size));
    return internal::toNetworkOrder(local.ipv4.port);
}

} // namespace orv::net
