#pragma once

/// \file
/// The buffer that all empty Strings share, built and released by the library's load and unload.
/// Before and after, each empty String gets a buffer of its own over the same zero unit.

namespace orv::internal {

/// Builds the shared buffer and takes one count on it.
void createSharedEmptyText();

/// Stops sharing and gives the count back.
void releaseSharedEmptyText();

} // namespace orv::internal
