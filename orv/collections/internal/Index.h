#pragma once

#include "orv/Failure.h"

#include <cstdint>

namespace orv::collections::internal {

/// Throws RangeErrorException unless `index` is 0 to before `end`.
inline void checkIndex(std::int32_t index, std::int32_t end)
{
    if (index < 0 || index >= end) throwRange();
}

/// Throws RangeErrorException unless `index` is 0 to `size`, as a place to insert at.
inline void checkPlace(std::int32_t index, std::int32_t size)
{
    if (index < 0 || index > size) throwRange();
}

} // namespace orv::collections::internal
