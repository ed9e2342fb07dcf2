#pragma once

#include "components/tcptransport/Connection.h"
#include "components/tcptransport/Settings.h"
#include "orv/net/AbstractTransport.h"
#include "orv/net/TcpServerSocket2.h"

namespace orv::components::tcptransport {

/// Listens from its construction to its end. Any number of threads may be in accept().
class TcpAcceptor : public net::AbstractAcceptor {
public:
    /// Throws ResultException and leaves nothing open.
    explicit TcpAcceptor(const Settings& settings);

    Reference<io::IChannel> accept() override;

    /// The port it listens on, in host byte order.
    std::uint16_t getLocalPort() const noexcept { return m_port; }

private:
    Owned<net::TcpServerSocket2> m_server;
    std::uint16_t m_port;
    std::int32_t m_timeout;
    std::int32_t m_acceptTimeout;
};

} // namespace orv::components::tcptransport
