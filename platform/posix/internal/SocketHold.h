#pragma once

/// \file
/// What waits of sockets ask about those that are being closed.

namespace orvcore {

/// Whether closeSocket() was called for a socket that somebody still holds.
bool isBeingClosed(int descriptor) noexcept;

} // namespace orvcore
