#pragma once

#include "orv/CoreAllocated.h"
#include "orv/net/SocketErrors.h"
#include "platform/sockets.h"

#include <cstdint>

namespace orv {
class String;
} // namespace orv

namespace orv::net {

/// An address of a host, IPv4 or IPv6, with the port that stood beside it.
///
/// Failures are results, never exceptions; a constructor stores its result through its last
/// argument, which may be null, and leaves an empty address behind on failure. Null arguments of an
/// operation are ORV_E_SOCKET_EINVAL.
///
/// Threads: one at a time for each object.
class ORV_API InetAddress : public CoreAllocated {
public:
    InetAddress(const InetAddress&) = delete;
    InetAddress& operator=(const InetAddress&) = delete;
    virtual ~InetAddress();

    /// Bytes of the address alone: 4 or 16.
    virtual ENUM_ORV_E_SOCKET getAddressBinaryLength(std::uint64_t* length) const = 0;

    /// Copies the bytes of the address, in network order. `*length` holds the room and receives the
    /// size, also when the room is too small, which is ORV_E_SOCKET_EMSGSIZE.
    virtual ENUM_ORV_E_SOCKET getAddressBinary(signed char* buffer,
                                               std::uint64_t* length) const = 0;

    /// Bytes of the socket address: 16 or 28.
    virtual ENUM_ORV_E_SOCKET getStorageBinaryLength(std::uint64_t* length) const = 0;

    /// Copies the socket address, by the same rule.
    virtual ENUM_ORV_E_SOCKET getStorageBinary(orv_sockaddr_union* buffer,
                                               std::uint64_t* length) const = 0;

    /// Whether it is the address to bind to for any: 1 or 0.
    virtual std::int16_t isAddressAny() const = 0;
    /// Whether it is 127.0.0.1 or ::1: 1 or 0. Other addresses of the network 127 are not.
    virtual std::int16_t isAddressLoopback() const = 0;
    /// Whether it is 255.255.255.255: 1 or 0.
    virtual std::int16_t isAddressNone() const = 0;
    /// Makes it the address to bind to for any; family and port stay.
    virtual void setAddressAny() = 0;

    /// The family of the address: 2 or 23, 0 for an empty one.
    ENUM_ORV_E_SOCKET getFamily(std::uint16_t* family) const;

    /// Appends the numeric text of the address; the name service is not asked. On failure "native
    /// error " and its number are appended.
    ENUM_ORV_E_SOCKET getAddressStr(String& text) const;

    /// Makes the object that fits the family of `address`, for the caller to delete. Another family
    /// than 2 and 23 is ORV_E_SOCKET_EINVAL; on every failure `*out` is null.
    static ENUM_ORV_E_SOCKET create(const orv_sockaddr_union* address, InetAddress** out);
    /// The same for an entry of the name service, with `port`.
    static ENUM_ORV_E_SOCKET create(const addrinfo* entry, std::uint16_t port, InetAddress** out);

protected:
    /// Copies the address by its family; null makes an empty one.
    InetAddress(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error);
    /// Copies the address of the entry, with `port`; null makes an empty one.
    InetAddress(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error);

    /// The socket address, its port in network byte order; family 0 for an empty one.
    orv_sockaddr_union m_address{};
};

/// An IPv4 address.
class ORV_API Inet4Address : public InetAddress {
public:
    Inet4Address(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error);
    Inet4Address(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error);
    ~Inet4Address() override;

    ENUM_ORV_E_SOCKET getAddressBinaryLength(std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getAddressBinary(signed char* buffer, std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getStorageBinaryLength(std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getStorageBinary(orv_sockaddr_union* buffer,
                                       std::uint64_t* length) const override;
    std::int16_t isAddressAny() const override;
    std::int16_t isAddressLoopback() const override;
    std::int16_t isAddressNone() const override;
    void setAddressAny() override;
};

/// An IPv6 address.
class ORV_API Inet6Address : public InetAddress {
public:
    Inet6Address(const orv_sockaddr_union* address, ENUM_ORV_E_SOCKET* error);
    Inet6Address(const addrinfo* entry, std::uint16_t port, ENUM_ORV_E_SOCKET* error);
    ~Inet6Address() override;

    ENUM_ORV_E_SOCKET getAddressBinaryLength(std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getAddressBinary(signed char* buffer, std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getStorageBinaryLength(std::uint64_t* length) const override;
    ENUM_ORV_E_SOCKET getStorageBinary(orv_sockaddr_union* buffer,
                                       std::uint64_t* length) const override;
    std::int16_t isAddressAny() const override;
    std::int16_t isAddressLoopback() const override;
    /// Always 0.
    std::int16_t isAddressNone() const override;
    void setAddressAny() override;
};

} // namespace orv::net
