#pragma once

#include "orv/net/AbstractTransport.h"

namespace orv::components::tcptransport {

/// {33D374FD-4CCB-4651-879D-3B14177CA072}
inline constexpr GUID CLSID_TcpTransport{
    0x33D374FD, 0x4CCB, 0x4651, {0x87, 0x9D, 0x3B, 0x14, 0x17, 0x7C, 0xA0, 0x72}};

/// Transport over TCP. README.md tells what its properties are.
class TcpTransport : public net::AbstractTransport {
public:
    TcpTransport() = default;

    /// The name that Transport::get() takes.
    static const char16_t* GetComProgID() { return u"Tessaly.Transport.TCP"; }
    /// What it is, for people.
    static const char16_t* GetComDescription() { return u"Transport over TCP"; }

    Reference<net::IConnector> createConnector(const util::PropertySet& properties) override;
    /// Listens from here on. With port 0 it writes the port it got into the set.
    Reference<net::IAcceptor> createAcceptor(const util::PropertySet& properties) override;
};

} // namespace orv::components::tcptransport
