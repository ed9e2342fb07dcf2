#include "components/tcptransport/TcpAcceptor.h"

#include "orv/net/TcpClientSocket2.h"

namespace orv::components::tcptransport {

namespace {

using net::TcpClientSocket2;
using net::TcpServerSocket2;

/// Takes a free port, of IPv6 and IPv4 at once where both are there, and holds it until the sockets
/// that are to listen on it are bound.
class FreePort {
public:
    FreePort()
    {
        if (bind(orvcore::FAMILY_IPV6) != ORV_E_SOCKET_OK) check(bind(orvcore::FAMILY_IPV4));
        orv_sockaddr_union local{};
        std::int32_t size = sizeof local;
        check(m_socket->getLocalAddress(&local, &size));
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&local.ipv4.port);
        m_port = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
    }

    std::uint16_t get() const noexcept { return m_port; }

private:
    ENUM_ORV_E_SOCKET bind(std::uint16_t family)
    {
        TcpClientSocket2* made = nullptr;
        const auto result = TcpClientSocket2::createTcpClientSocket2(family, orvcore::TYPE_STREAM,
                                                                     orvcore::PROTOCOL_TCP, &made);
        m_socket.reset(made);
        if (result != ORV_E_SOCKET_OK) return result;
        orv_sockaddr_union any{};
        any.family = family;
        const auto bound = m_socket->bind(&any, orvcore::sizeOfAddress(family));
        // From here on the port is shared with those that share theirs, as listeners do. Set
        // before, it would let the system choose one that others share.
        if (bound != ORV_E_SOCKET_OK) return bound;
        return setOption(*m_socket, orvcore::LEVEL_SOCKET, orvcore::OPTION_REUSE_ADDRESS, 1);
    }

    Owned<TcpClientSocket2> m_socket;
    std::uint16_t m_port = 0;
};

Owned<TcpServerSocket2> makeServer()
{
    TcpServerSocket2* made = nullptr;
    check(TcpServerSocket2::createTcpServerSocket2(0, orvcore::TYPE_STREAM, orvcore::PROTOCOL_TCP,
                                                   &made));
    return Owned<TcpServerSocket2>(made);
}

/// Listens on the addresses of `host` that can be had.
void bind(TcpServerSocket2& server, const String& host, std::uint16_t port)
{
    const ENUM_ORV_E_SOCKET found =
        host.getLength() == 0 ? server.bindListAddAddrAny(port)
                              : server.bindListAddAddrInfo(host.getBytes(), nullptr, port);
    check(server.bind());
    if (server.getId() != 0) return;
    check(found);
    // Wildcards among the hosts were passed over without a word.
    throwResult(ORV_E_SOCKET_EADDRNOTAVAIL);
}

/// Binds to the port asked for, or to a free one; the port.
std::uint16_t bind(TcpServerSocket2& server, const Settings& settings)
{
    if (settings.port != 0) {
        bind(server, settings.host, settings.port);
        return settings.port;
    }
    const FreePort free;
    bind(server, settings.host, free.get());
    return free.get();
}

} // namespace

TcpAcceptor::TcpAcceptor(const Settings& settings)
    : m_server(makeServer()), m_port(bind(*m_server, settings)), m_timeout(settings.timeout),
      m_acceptTimeout(settings.acceptTimeout == 0 ? TcpServerSocket2::FOR_EVER
                                                  : settings.acceptTimeout)
{
    check(m_server->listen(settings.backlog));
}

Reference<io::IChannel> TcpAcceptor::accept()
{
    net::TcpWorkerSocket2* accepted = nullptr;
    check(m_server->accept(&accepted, m_acceptTimeout));
    Owned<net::TcpWorkerSocket2> socket(accepted);
    if (!socket) throwOutOfMemory();
    return makeChannel(std::move(socket), m_timeout);
}

} // namespace orv::components::tcptransport
