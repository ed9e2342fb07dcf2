#pragma once

#include "orv/String.h"
#include "orv/net/InetAddress.h"

#include <cstdint>
#include <memory>

namespace orv::net {

/// An address of a host with a port and, where the name service gave one, its canonical name.
///
/// Failures are results; a constructor stores its result through its last argument. An object
/// without address, left behind by a failed constructor, answers ORV_E_SOCKET_EFAULT where the
/// address is asked for.
///
/// Threads: one at a time for each object.
class ORV_API InetSocketAddress : public CoreAllocated {
public:
    /// Takes address and port of a socket address; null pointers are ORV_E_SOCKET_EINVAL.
    InetSocketAddress(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error);
    /// Takes address and canonical name of an entry of the name service, with `port`.
    InetSocketAddress(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error);
    InetSocketAddress(const InetSocketAddress&) = delete;
    InetSocketAddress& operator=(const InetSocketAddress&) = delete;
    virtual ~InetSocketAddress();

    /// The address, owned by this object; null for none.
    InetAddress* getAddress() const noexcept { return m_address.get(); }

    /// As InetAddress::getFamily().
    ENUM_ORV_E_SOCKET getFamily(std::uint16_t* family) const;
    /// As InetAddress::getAddressStr().
    ENUM_ORV_E_SOCKET getAddressStr(String& text) const;

    /// The port in host byte order.
    ENUM_ORV_E_SOCKET getPortHostOrder(std::uint16_t* port) const;
    /// Sets the port of this object; that within the address stays.
    ENUM_ORV_E_SOCKET setPortHostOrder(std::uint16_t port);

    /// The name that the name service gave, or nothing.
    const String& getCanonicalName() const noexcept { return m_canonicalName; }

    /// The port of a service over TCP, as "http", in host byte order. An empty name gives 0 and no
    /// error; `*port` is 0 on failure too.
    static ENUM_ORV_E_SOCKET getPortHostOrderFromTcpServiceName(const char* service,
                                                                std::uint16_t* port);

    /// Appends the form for people: "10.1.2.3:80", "[fe80::1]:80", and without an address
    /// "0address missing:80". Throws OutOfMemoryException.
    void getDiagnosticStr(String& text) const;

private:
    std::unique_ptr<InetAddress> m_address;
    std::uint16_t m_port = 0;
    String m_canonicalName;
};

} // namespace orv::net
