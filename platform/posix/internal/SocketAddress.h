#pragma once

#include "platform/sockets.h"

#include <sys/socket.h>

/// \file
/// Addresses between the face and the system.

namespace orvcore {

/// The system's number of a family of the face, which may be the system's already; 0 for others.
int nativeFamily(std::int32_t family) noexcept;

/// The first `size` bytes of `address` with the system's family.
sockaddr_storage toNative(const orv_sockaddr_union* address, std::uint32_t size) noexcept;

/// The address of a socket that the system gave.
orv_sockaddr_union fromNative(const sockaddr_storage& native) noexcept;

} // namespace orvcore
