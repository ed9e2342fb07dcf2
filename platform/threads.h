#pragma once

#include "platform/orvcore.h"

/// \file
/// What is asked of the calling thread itself.

namespace orvcore {

/// Identifier of the calling thread as the system knows it, in a forked child that of the child;
/// never 0.
ORVCORE_API std::uint32_t currentThreadId() noexcept;

/// A number of this process that no process forked off it has; 0 where the system cannot tell.
/// Cheaper than a system call.
std::uint32_t processMark() noexcept;

/// Lets the calling thread sleep, signals or not; 0 lets others run, ORV_INFINITE never returns.
ORVCORE_API void sleepFor(std::uint32_t milliseconds) noexcept;

/// Lets the calling thread sleep for about so long; a signal ends it early.
ORVCORE_API void napFor(std::uint32_t microseconds) noexcept;

} // namespace orvcore
