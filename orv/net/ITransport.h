#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Reference.h"
#include "orv/io/IChannel.h"
#include "orv/util/PropertySet.h"

namespace orv::net {

/// Waits for connections. Made by ITransport::createAcceptor().
class ORV_API IAcceptor : public IORVUnknown {
public:
    /// Waits for the next connection and gives it out as a channel, never null. Throws.
    virtual Reference<io::IChannel> accept() = 0;

protected:
    ~IAcceptor() = default;
};

/// Makes connections. Made by ITransport::createConnector().
class ORV_API IConnector : public IORVUnknown {
public:
    /// Makes a further connection and gives it out as a channel, never null. Throws.
    virtual Reference<io::IChannel> connect() = 0;

protected:
    ~IConnector() = default;
};

/// A way to reach another process: what waits for connections, and what makes them. Both are told
/// where and how by properties, whose names are the transport's own.
class ORV_API ITransport : public IORVUnknown {
public:
    /// Makes a connector. The set is lent for the call: an implementation takes what it needs out
    /// of it and keeps no Reference to it, since it may lie on the stack. Throws.
    virtual Reference<IConnector> createConnector(const util::PropertySet& properties) = 0;
    /// The same for an acceptor.
    virtual Reference<IAcceptor> createAcceptor(const util::PropertySet& properties) = 0;

protected:
    ~ITransport() = default;
};

} // namespace orv::net
