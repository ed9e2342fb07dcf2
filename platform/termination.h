#pragma once

#include "platform/Export.h"

/// \file
/// Ending a server program in order when the user or the system asks for it (SIGINT, SIGTERM).
///
///     orvcore::holdTermination();    // first of all, before any thread
///     ...                            // one thread:
///     orvcore::awaitTermination();
///     server->close();               // the others find out by this

namespace orvcore {

/// Keeps the requests from ending the process; the calling thread and those it starts from now on
/// leave them to awaitTermination().
ORVCORE_API void holdTermination() noexcept;

/// Waits for a request and takes it.
ORVCORE_API void awaitTermination() noexcept;

/// Makes a request to this process itself, for a program that has come to its end unasked.
ORVCORE_API void requestTermination() noexcept;

} // namespace orvcore
