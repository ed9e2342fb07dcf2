#pragma once

#include "platform/sockets.h"

#include <climits>

/// \file
/// How the calls of the system and their failures look at the face of sockets.

namespace orvcore {

inline constexpr SocketError socketFault = 10014;
inline constexpr SocketError notASocket = 10038;
inline constexpr SocketError noSuchOption = 10042;
inline constexpr SocketError familyNotSupported = 10047;
inline constexpr SocketError socketTimedOut = 10060;
inline constexpr SocketError noData = 11004;

/// The socket error for an error number of the system; the number itself where there is none.
SocketError socketErrorOf(int nativeError) noexcept;

/// The resolver error for a result of getaddrinfo() or getnameinfo(), `errno` being its own.
SocketError resolverErrorOf(int nativeResult) noexcept;

/// Leaves `error` for lastSocketError() and returns it.
SocketError remember(SocketError error) noexcept;

/// Remembers the failure in `errno`.
SocketError rememberFailure() noexcept;

/// Remembers the outcome of a call that returns a negative number on failure.
inline SocketError rememberOutcome(int result) noexcept
{
    return result < 0 ? rememberFailure() : remember(0);
}

/// The descriptor of a socket, -1 for a number that can be none.
inline int descriptorOf(NativeSocket socket) noexcept
{
    return socket <= INT_MAX ? static_cast<int>(socket) : -1;
}

} // namespace orvcore
