#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace orv::collections::internal {

/// Places for the entries of one map, each a cache line, from blocks that grow with the map.
///
/// The map takes places and gives them back without a locked operation. An entry that somebody
/// holds when it leaves the map is lent: its place comes back from whatever thread lets it go, and
/// the pool lives on until the last one did.
class EntryPool {
public:
    static constexpr std::size_t PLACE = 64; ///< bytes, and their alignment

    /// A pool with its first places.
    static EntryPool* create();
    EntryPool(const EntryPool&) = delete;
    EntryPool& operator=(const EntryPool&) = delete;

    // The map's operations.

    /// Makes sure that take() has a place.
    void reserve()
    {
        if (m_free == nullptr && m_fresh == m_end) refill();
    }

    /// A place, after reserve().
    void* take() noexcept
    {
        if (m_free == nullptr) {
            void* const place = m_fresh;
            m_fresh += PLACE;
            return place;
        }
        Free* const place = m_free;
        m_free = place->next;
        return place;
    }

    /// Gives a place back.
    void give(void* place) noexcept { m_free = new (place) Free{m_free}; }

    /// Leaves a place to others, who end with giveBack().
    void lend() noexcept { m_users.fetch_add(1, std::memory_order_relaxed); }

    /// Ends the map's use of the pool.
    void retire() noexcept { leave(); }

    /// Gives a lent place back, which may be the end of the pool. Threads: any.
    void giveBack(void* place) noexcept;

private:
    struct Free {
        Free* next;
    };
    struct Block {
        Block* next;
    };

    explicit EntryPool(std::byte* places) noexcept;
    ~EntryPool() = default;

    void refill();
    void leave() noexcept;

    Free* m_free = nullptr;
    std::byte* m_fresh; ///< the first place that was never taken
    std::byte* m_end;   ///< behind the last place of the newest block
    Block* m_blocks = nullptr;
    std::size_t m_places; ///< in the newest block
    std::atomic<std::uint32_t> m_users{1};
    std::atomic<Free*> m_returned{nullptr};
};

} // namespace orv::collections::internal
