#include "components/tcptransport/TcpTransport.h"

#include "components/tcptransport/TcpAcceptor.h"
#include "components/tcptransport/TcpConnector.h"

namespace orv::components::tcptransport {

Reference<net::IConnector> TcpTransport::createConnector(const util::PropertySet& properties)
{
    return makeReference<TcpConnector>(Settings(properties));
}

Reference<net::IAcceptor> TcpTransport::createAcceptor(const util::PropertySet& properties)
{
    const Settings settings(properties);
    const auto acceptor = makeReference<TcpAcceptor>(settings);
    if (settings.port == 0) {
        // Asking for any port is asking for this answer.
        const_cast<util::PropertySet&>(properties)
            .set(LOCAL_PORT, String::valueOf(std::uint32_t{acceptor->getLocalPort()}));
    }
    return acceptor;
}

} // namespace orv::components::tcptransport
