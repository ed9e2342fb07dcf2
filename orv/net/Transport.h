#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/net/ITransport.h"

namespace orv::net {

/// Finds transports, each of which is a component.
///
///     const auto transport = net::Transport::get(u"Tessaly.Transport.TCP");
///     const auto properties = makeReference<util::PropertySet>();
///     properties->set(u"host", u"example.org");
///     properties->set(u"port", u"7");
///     const auto channel = transport->createConnector(*properties)->connect();
class ORV_API Transport {
public:
    /// The transport registered as `progId`: a new QuarkTransport. Throws ResultException with the
    /// result of the component model, where there is none or it cannot be loaded.
    static Reference<ITransport> get(const String& progId);

private:
    Transport() = default;
};

} // namespace orv::net
