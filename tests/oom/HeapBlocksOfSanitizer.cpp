#include "HeapBlocks.h"

#include <atomic>
#include <cstddef>

// A sanitizer's heap cannot be replaced, but it tells of every block. GCC brings the function
// without its header.

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*taken)(const volatile void* block,
                                                                       std::size_t size),
                                                         void (*freed)(const volatile void* block));

namespace {

constinit std::atomic<std::int64_t> s_blocks{0};

void taken(const volatile void*, std::size_t)
{
    s_blocks.fetch_add(1, std::memory_order_relaxed);
}

void freed(const volatile void*)
{
    s_blocks.fetch_sub(1, std::memory_order_relaxed);
}

} // namespace

std::int64_t orv::test::heapBlocks()
{
    static const int s_installed = __sanitizer_install_malloc_and_free_hooks(&taken, &freed);
    return s_installed > 0 ? s_blocks.load() : -1;
}
