#pragma once

#include "tools/orv/Arguments.h"

#include "orv/exec/IRunnable.h"
#include "orv/net/TcpSocket2.h"
#include "orv/quark/Implements.h"

#include <cstdint>
#include <memory>
#include <vector>

/// \file
/// What the commands that use the network share.

namespace tool {

/// Bytes that a connection carries at a time.
inline constexpr std::int32_t BLOCK = 1 << 16;

/// What a command does in a further thread.
using Task = orv::quark::Implements<orv::Object, orv::exec::IRunnable>;

/// Throws Failure for a result other than 0: `what` and the description of the result.
void check(ENUM_ORV_E_SOCKET result, const orv::String& what);

struct DestroySocket {
    template <class Socket>
    void operator()(Socket* socket) const
    {
        orv::net::TcpSocket2::destroyTcpSocket2(&socket);
    }
};

/// A socket that is ended in order.
template <class Socket>
using OwnedSocket = std::unique_ptr<Socket, DestroySocket>;

/// The addresses of the host named by -host, with the port of -port, in the order of the name
/// service. There is at least one.
std::vector<orv_sockaddr_union> addressesOfHost(const Arguments& arguments);

/// Address and port, as `10.1.2.3:80` or `[fe80::1]:80`.
orv::String addressText(const orv_sockaddr_union& address);

} // namespace tool
