#pragma once

#include "orv/Result.h"

/// \file
/// The start and the end of the library. Loading and unloading the shared library calls them; a
/// host calls them only where it links the code in statically. Threads: one at a time.

extern "C" {

/// Brings the library up at the first call: the C locale of the environment, the new-handler, the
/// global lock, the class manager with the library's classes, the codec manager with its
/// encodings. Later calls only count. Returns S_OK, or throws what went wrong.
ORV_API orv::Result ORVCLLibInit();

/// Undoes one ORVCLLibInit(); the last one takes the library down. E_FAIL when there were more of
/// these calls than of those. Never throws.
///
/// E_FAIL too when the sockets cannot be ended: then the global lock and the new-handler stay.
ORV_API orv::Result ORVCLLibUninit() noexcept;

} // extern "C"
