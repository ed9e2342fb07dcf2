#pragma once

#include "orv/IORVComparator.h"
#include "orv/Reference.h"

namespace orv::collections {

/// The one util::Comparator that every collection uses unless it is given another. Made by the
/// first call, released when the library unloads. Threads: any.
ORV_API Reference<IORVComparator> GetDefaultComparator();

} // namespace orv::collections
