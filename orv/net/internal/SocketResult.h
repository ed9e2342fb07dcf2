#pragma once

#include "orv/net/SocketErrors.h"
#include "platform/sockets.h"

#include <utility>

/// \file
/// Results within the socket layer.

namespace orv::net::internal {

/// The result for the outcome of a socket operation of the platform.
inline ENUM_ORV_E_SOCKET resultOf(orvcore::SocketError error) noexcept
{
    return error == 0 ? ORV_E_SOCKET_OK : ORV_E_SOCKETFromNativeSocketError(error);
}

/// The error that a socket has kept for whoever asks, which takes it off the socket.
inline orvcore::SocketError takePendingError(orvcore::NativeSocket socket) noexcept
{
    orvcore::SocketError pending = 0;
    std::int32_t size = sizeof pending;
    const auto error = orvcore::getSocketOption(socket, orvcore::LEVEL_SOCKET,
                                                orvcore::OPTION_ERROR, &pending, &size);
    return error != 0 ? error : pending;
}

/// The result of `body`, or of what it threw: `outOfMemory` where memory ran out.
template <class Body>
ENUM_ORV_E_SOCKET withoutException(ENUM_ORV_E_SOCKET outOfMemory, Body&& body)
{
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        const Result result = resultOfCurrentException();
        return result == E_OUTOFMEMORY ? outOfMemory : static_cast<ENUM_ORV_E_SOCKET>(result);
    }
}

} // namespace orv::net::internal
