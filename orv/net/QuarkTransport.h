#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/net/ITransport.h"
#include "orv/net/quark/IORVTransport.h"
#include "orv/quark/Implements.h"

/// \file
/// The transport of a component, for callers that want exceptions. Made by Transport::get().
///
/// Ownership: each holds a count on its component object. Errors: ResultException with the
/// component's result, E_FAIL for one that reports success and gives nothing. Threads: as the
/// component allows.

namespace orv::net {

/// A component that is a transport.
class ORV_API QuarkTransport : public ::orv::quark::Implements<Object, ITransport> {
public:
    /// Creates an object of the class registered as `progId`.
    explicit QuarkTransport(const String& progId);
    /// Wraps an object at hand.
    explicit QuarkTransport(quark::IORVTransport* transport);
    ~QuarkTransport() noexcept(false) override;

    Reference<IConnector> createConnector(const util::PropertySet& properties) override;
    Reference<IAcceptor> createAcceptor(const util::PropertySet& properties) override;

private:
    Reference<quark::IORVTransport> m_transport;
};

/// Its acceptor. The channels are QuarkChannels.
class ORV_API QuarkAcceptor : public ::orv::quark::Implements<Object, IAcceptor> {
public:
    explicit QuarkAcceptor(quark::IORVAcceptor* acceptor);
    ~QuarkAcceptor() noexcept(false) override;

    Reference<io::IChannel> accept() override;

private:
    Reference<quark::IORVAcceptor> m_acceptor;
};

/// Its connector.
class ORV_API QuarkConnector : public ::orv::quark::Implements<Object, IConnector> {
public:
    explicit QuarkConnector(quark::IORVConnector2* connector);
    ~QuarkConnector() noexcept(false) override;

    Reference<io::IChannel> connect() override;

private:
    Reference<quark::IORVConnector2> m_connector;
};

} // namespace orv::net
