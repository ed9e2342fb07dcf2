#include "orv/collections/internal/EntryPool.h"

#include "platform/orvcore.h"

#include <algorithm>
#include <utility>

namespace orv::collections::internal {

namespace {

constexpr std::size_t FIRST_PLACES = 8;
constexpr std::size_t MOST_PLACES = 512; ///< in a block

/// A block with room for a header and aligned places behind it.
void* allocateBlock(std::size_t header, std::size_t places)
{
    return orvcore::allocate(header + EntryPool::PLACE - 1 + places * EntryPool::PLACE);
}

std::byte* placesBehind(void* header, std::size_t size) noexcept
{
    const auto end = reinterpret_cast<std::uintptr_t>(header) + size;
    const std::uintptr_t gap = (EntryPool::PLACE - end % EntryPool::PLACE) % EntryPool::PLACE;
    return static_cast<std::byte*>(header) + size + gap;
}

} // namespace

EntryPool::EntryPool(std::byte* places) noexcept
    : m_fresh(places), m_end(places + FIRST_PLACES * PLACE), m_places(FIRST_PLACES)
{
}

EntryPool* EntryPool::create()
{
    void* const block = allocateBlock(sizeof(EntryPool), FIRST_PLACES);
    return new (block) EntryPool(placesBehind(block, sizeof(EntryPool)));
}

void EntryPool::refill()
{
    m_free = m_returned.exchange(nullptr, std::memory_order_acquire);
    if (m_free != nullptr) return;

    const std::size_t places = std::min(m_places * 2, MOST_PLACES);
    m_blocks = new (allocateBlock(sizeof(Block), places)) Block{m_blocks};
    m_fresh = placesBehind(m_blocks, sizeof(Block));
    m_end = m_fresh + places * PLACE;
    m_places = places;
}

void EntryPool::giveBack(void* place) noexcept
{
    auto* const free = new (place) Free{m_returned.load(std::memory_order_relaxed)};
    while (!m_returned.compare_exchange_weak(free->next, free, std::memory_order_release,
                                             std::memory_order_relaxed)) {
    }
    leave();
}

void EntryPool::leave() noexcept
{
    if (m_users.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    while (m_blocks != nullptr) orvcore::deallocate(std::exchange(m_blocks, m_blocks->next));
    this->~EntryPool();
    orvcore::deallocate(this);
}

} // namespace orv::collections::internal
