#pragma once

#include "platform/orvcore.h"

#include <cstddef>

namespace orv {

/// Base of classes that are no ComObject and whose objects come from orvcore::allocate() all the
/// same.
class CoreAllocated {
public:
    /// Throws as orvcore::allocate() does; never gives null.
    static void* operator new(std::size_t size) { return orvcore::allocate(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* memory) noexcept { orvcore::deallocate(memory); }
    static void operator delete(void*, void*) noexcept {}

protected:
    CoreAllocated() = default;
    CoreAllocated(const CoreAllocated&) = default;
    CoreAllocated& operator=(const CoreAllocated&) = default;
    ~CoreAllocated() = default;
};

} // namespace orv
