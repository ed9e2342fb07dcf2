#pragma once

#include "orv/Object.h"
#include "orv/net/ITransport.h"
#include "orv/net/quark/IORVTransport.h"
#include "orv/quark/Implements.h"

/// \file
/// What a transport derives from to be offered to the hosts of its component: the class side
/// throws, the interface side returns the result of what was thrown. A class side that returns null
/// is E_FAIL, and a result that does not know the interface asked for E_NOINTERFACE.

namespace orv::net {

/// The base of transports.
///
///     class PipeTransport : public net::AbstractTransport {
///     public:
///         Reference<net::IAcceptor> createAcceptor(const util::PropertySet& p) override;
///         Reference<net::IConnector> createConnector(const util::PropertySet& p) override;
///     };
///
/// Through the interface the properties arrive as a QuarkPropertySet on the stack, which cannot
/// list its names: ask for those that the transport knows. Null arrives as an empty set. It holds
/// no data.
class ORV_API AbstractTransport
    : public ::orv::quark::Implements<Object, ITransport, quark::IORVTransport> {
public:
    ~AbstractTransport() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    Result CreateAcceptor(const util::quark::IPropertySet* properties, const GUID& iid,
                          void** out) override;
    Result CreateConnector(const util::quark::IPropertySet* properties, const GUID& iid,
                           void** out) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

protected:
    AbstractTransport();
};

/// The base of acceptors. Its accept() gives out channels that answer io::quark::IORVChannel, as
/// those of Channels::adaptStreams() do.
class ORV_API AbstractAcceptor
    : public ::orv::quark::Implements<Object, IAcceptor, quark::IORVAcceptor> {
public:
    ~AbstractAcceptor() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    Result Accept(const GUID& iid, void** out) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

protected:
    AbstractAcceptor();
};

/// The base of connectors, whose connect() gives out such channels.
class ORV_API AbstractConnector
    : public ::orv::quark::Implements<Object, IConnector, quark::IORVConnector2> {
public:
    ~AbstractConnector() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    Result Connect(const GUID& iid, void** out) override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

protected:
    AbstractConnector();
};

} // namespace orv::net
