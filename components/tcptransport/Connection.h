#pragma once

#include "orv/Failure.h"
#include "orv/Reference.h"
#include "orv/io/IChannel.h"
#include "orv/net/TcpWorkerSocket2.h"

#include <cstdint>
#include <memory>

namespace orv::components::tcptransport {

/// Ends a socket as its class wants it.
struct DestroySocket {
    void operator()(net::TcpSocket2* socket) const { net::TcpSocket2::destroyTcpSocket2(&socket); }
};

/// A socket that closes with its owner.
template <class Socket>
using Owned = std::unique_ptr<Socket, DestroySocket>;

/// Throws ResultException for a failure of a socket.
inline void check(ENUM_ORV_E_SOCKET result)
{
    throwIfFailed(result);
}

/// A connected socket as a channel that answers io::quark::IORVChannel and closes with its last
/// Reference. One thread may read while another writes.
///
/// A read gives what has come and -1 when the peer has ended; a write sends all. Both throw
/// ResultException: ORV_E_SOCKET_ETIMEDOUT after `timeout` milliseconds (0 for ever) in which
/// nothing moved, ORV_E_SOCKET_ECONNRESET and the like for a peer that has gone. A read may be
/// repeated after a time-out, nothing is lost; of a write that failed a part may have gone out.
Reference<io::IChannel> makeChannel(Owned<net::TcpWorkerSocket2> socket, std::int32_t timeout);

/// Sets a numeric option.
ENUM_ORV_E_SOCKET setOption(net::TcpWorkerSocket2& socket, std::int32_t level, std::int32_t option,
                            std::int32_t value);

/// Limits each wait of the socket, that for a connection too, to `timeout` milliseconds, 0 being
/// for ever.
void limitWaits(net::TcpWorkerSocket2& socket, std::int32_t timeout);

} // namespace orv::components::tcptransport
