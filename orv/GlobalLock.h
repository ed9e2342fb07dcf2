#pragma once

#include "orv/Export.h"

namespace orv {

namespace sync {
class LockObject;
}

/// Guards the objects that the library builds on first use. A mutex between load and unload of the
/// library, null before and after. Held shortly, never across a host's code.
extern ORV_API sync::LockObject* g_pGlobalLock;

} // namespace orv
