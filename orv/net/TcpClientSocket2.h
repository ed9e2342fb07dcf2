#pragma once

#include "orv/net/TcpWorkerSocket2.h"

namespace orv::net {

/// A socket that its owner connects.
class ORV_API TcpClientSocket2 : public TcpWorkerSocket2 {
public:
    using TcpWorkerSocket2::TcpWorkerSocket2;
    ~TcpClientSocket2() override;

    /// Makes a socket that is not connected yet: family 2 or 23, type 1 (stream), protocol 6 (TCP)
    /// or 0. End it by destroyTcpSocket2(). On failure `*out` is null.
    static ENUM_ORV_E_SOCKET createTcpClientSocket2(std::int32_t family, std::int32_t type,
                                                    std::int32_t protocol, TcpClientSocket2** out);

    /// Binds to a local address of `length` bytes.
    ENUM_ORV_E_SOCKET bind(const orv_sockaddr_union* address, std::uint64_t length);

    /// Connects to an address of `length` bytes, waiting until the connection stands or has failed.
    ENUM_ORV_E_SOCKET connect(const orv_sockaddr_union* address, std::uint64_t length);

    /// The local address. `*length` holds the room in bytes and receives the size;
    /// ORV_E_SOCKET_EFAULT when the room is too small.
    ENUM_ORV_E_SOCKET getLocalAddress(orv_sockaddr_union* address, std::int32_t* length);
};

} // namespace orv::net
