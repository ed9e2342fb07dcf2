#include "HeapBlocks.h"

#include <atomic>
#include <cerrno>
#include <cstddef>

// The C heap of this program, counted on its way to that of glibc.

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

constinit std::atomic<std::int64_t> s_blocks{0};

void* counted(void* block) noexcept
{
    if (block != nullptr) s_blocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

} // namespace

std::int64_t orv::test::heapBlocks()
{
    return s_blocks.load();
}

extern "C" {

void* malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size)
{
    void* const moved = __libc_realloc(block, size);
    if (block == nullptr) return counted(moved);
    if (moved == nullptr && size == 0) s_blocks.fetch_sub(1, std::memory_order_relaxed);
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void** out, std::size_t alignment, std::size_t size)
{
    void* const block = memalign(alignment, size);
    if (block == nullptr) return ENOMEM;
    *out = block;
    return 0;
}

void free(void* block)
{
    if (block != nullptr) s_blocks.fetch_sub(1, std::memory_order_relaxed);
    __libc_free(block);
}

} // extern "C"
