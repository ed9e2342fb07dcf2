#pragma once

#include "orv/Failure.h"
#include "platform/orvcore.h"

#include <cstddef>
#include <memory>
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

/// Frees what allocateStorage() gave.
struct FreeStorage {
    void operator()(void* storage) const noexcept { orvcore::deallocate(storage); }
};
using OwnedStorage = std::unique_ptr<void, FreeStorage>;

} // namespace orv::collections::internal
