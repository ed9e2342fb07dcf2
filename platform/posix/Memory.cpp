#include "platform/orvcore.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace orvcore {
namespace {

constinit std::atomic<ORVNewHandler> s_newHandler{nullptr};
constinit std::atomic<std::uint64_t> s_failingAllocation{0}; ///< 0 while failures are off
constinit std::atomic<bool> s_failsForever{false};
constinit std::atomic<std::uint64_t> s_allocations{0}; ///< counted while failures are on

[[gnu::noinline, gnu::cold]] bool countAndDecide(std::uint64_t failing) noexcept
{
    const std::uint64_t number = s_allocations.fetch_add(1, std::memory_order_relaxed) + 1;
    return number == failing ||
           (number > failing && s_failsForever.load(std::memory_order_relaxed));
}

bool failsOnRequest() noexcept
{
    const std::uint64_t failing = s_failingAllocation.load(std::memory_order_relaxed);
    return failing != 0 && countAndDecide(failing);
}

} // namespace

void* allocateRaw(std::size_t size) noexcept
{
    if (failsOnRequest()) return nullptr;
    return std::malloc(size == 0 ? 1 : size);
}

void* reallocateRaw(void* memory, std::size_t size) noexcept
{
    if (failsOnRequest()) return nullptr;
    return std::realloc(memory, size == 0 ? 1 : size);
}

void deallocateRaw(void* memory) noexcept
{
    std::free(memory);
}

void* allocate(std::size_t size)
{
    for (;;) {
        if (void* memory = allocateRaw(size)) return memory;
        const ORVNewHandler handler = s_newHandler.load(std::memory_order_acquire);
        if (handler == nullptr) throw std::bad_alloc();
        handler();
    }
}

void deallocate(void* memory) noexcept
{
    std::free(memory);
}

std::uint64_t failAllocation(std::uint64_t nth, bool forever) noexcept
{
    s_failingAllocation.store(0, std::memory_order_relaxed);
    const std::uint64_t counted = s_allocations.exchange(0, std::memory_order_relaxed);
    s_failsForever.store(forever, std::memory_order_relaxed);
    s_failingAllocation.store(nth, std::memory_order_relaxed);
    return counted;
}

} // namespace orvcore

ORVNewHandler ORVSetNewHandler(ORVNewHandler handler) noexcept
{
    return orvcore::s_newHandler.exchange(handler, std::memory_order_acq_rel);
}
