#pragma once

#include "components/tcptransport/Settings.h"
#include "orv/net/AbstractTransport.h"

namespace orv::components::tcptransport {

/// Asks for the addresses of its host at each connection and tries one after the other. Any number
/// of threads may be in connect().
class TcpConnector : public net::AbstractConnector {
public:
    /// Port 0 throws ResultException with E_INVALIDARG.
    explicit TcpConnector(const Settings& settings);

    Reference<io::IChannel> connect() override;

private:
    const Settings m_settings;
};

} // namespace orv::components::tcptransport
