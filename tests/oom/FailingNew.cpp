#include "platform/orvcore.h"

#include <cstddef>
#include <new>

// The allocation of the C++ runtime in this program goes through the one of orvcore, so that one
// countdown covers the library's own allocations and those of the standard containers within it.

void* operator new(std::size_t size)
{
    if (void* const block = orvcore::allocateRaw(size)) return block;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void operator delete(void* block) noexcept
{
    orvcore::deallocateRaw(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    orvcore::deallocateRaw(block);
}

void operator delete[](void* block) noexcept
{
    orvcore::deallocateRaw(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    orvcore::deallocateRaw(block);
}
