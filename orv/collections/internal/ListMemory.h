#pragma once

#include "orv/Failure.h"
#include "platform/orvcore.h"

#include <cstddef>
#include <new>

namespace orv::collections::internal {

/// orvcore::allocate() for the storage of the lists. Throws OutOfMemoryException.
[[nodiscard]] inline void* allocateStorage(std::size_t size)
{
    try {
        return orvcore::allocate(size);
    } catch (const std::bad_alloc&) {
        throwOutOfMemory();
    }
}

} // namespace orv::collections::internal
