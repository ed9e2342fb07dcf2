#pragma once

#include "orv/Failure.h"
#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/BucketArray.h"
#include "orv/collections/DropAll.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <new>
#include <utility>

namespace orv::collections::internal {

/// What every entry of a PackedTable begins with.
struct PackedEntry {
    Object* value; ///< one count, or null
    std::uint32_t hash;
    std::uint32_t next; ///< a link; DEAD in an entry taken out
};

/// The storage of a chained hash table from keys to objects: entries with their keys lie one behind
/// the other in one block, and 32-bit links join them to chains.
///
/// The first entries lie in the table itself, without buckets: a table
/// of a few entries takes no memory of its own. Nobody may see that: a walk gives buckets in order
/// and within each the newest entry first, as chains with insertion at the front do. What is taken
/// out leaves a hole; the block is packed anew when it is full. Entries move, so nothing points at
/// them from outside.
///
/// `Key` is what is looked for, with an `Entry` derived from PackedEntry:
///
///     std::uint32_t granules() const;             // of 8 bytes, in an entry with this key
///     static std::uint32_t granulesOf(const Entry&);
///     bool matches(const Entry&) const;           // of the same hash
///     void store(Entry&) const;
template <class Key>
class PackedTable {
public:
    using Entry = typename Key::Entry;

    explicit PackedTable(std::int32_t capacity) noexcept : m_buckets(capacity) {}
    PackedTable(const PackedTable&) = delete;
    PackedTable& operator=(const PackedTable&) = delete;
    ~PackedTable() noexcept(false)
    {
        if (m_used != 0) releaseAll();
    }

    std::int32_t capacity() const noexcept { return m_buckets.capacity(); }

    /// The entry of `hash` that `key.matches(entry)`, or null. Valid until the table changes.
    template <class Sought>
    Entry* find(const Sought& key, std::uint32_t hash) const
    {
        if (!m_buckets.isOpen()) return findUnchained(key, hash);
        std::uint32_t link = m_buckets.head(m_buckets.bucketOf(hash));
        while (link != NONE) {
            Entry& entry = at(link);
            if (entry.hash == hash && key.matches(entry)) return &entry;
            link = entry.next;
        }
        return nullptr;
    }

    /// Makes room for an entry with `key`. Without memory nothing has changed.
    void reserve(const Key& key)
    {
        const std::uint32_t granules = key.granules();
        if (m_room - m_used >= granules) return;
        const std::uint32_t live = m_used - m_holes;
        if (live > MOST_GRANULES - granules) throwOutOfMemory();
        chain();
        repack(std::max(std::min((live + granules) * 2, MOST_GRANULES), FIRST_GRANULES));
    }

    /// Puts an entry at the front of its bucket, in room made by reserve().
    void insert(const Key& key, std::uint32_t hash, Object* value)
    {
        if (value != nullptr) value->AddRef();
        const std::uint32_t link = m_used;
        m_used += key.granules();
        auto* const entry = new (place(link)) Entry;
        entry->value = value;
        entry->hash = hash;
        entry->next = NONE;
        key.store(*entry);
        if (m_buckets.isOpen()) putFirst(m_buckets, link, *entry);
    }

    /// Gives the entry, which find() gave, another value; returns the one before.
    Reference<Object> exchange(Entry& entry, Object* value)
    {
        if (value != nullptr) value->AddRef();
        return Reference<Object>::adopt(std::exchange(entry.value, value));
    }

    /// Takes out the entry, which find() gave; returns its value.
    Reference<Object> take(Entry& entry) noexcept
    {
        auto value = Reference<Object>::adopt(entry.value);
        if (m_buckets.isOpen()) {
            unlink(entry);
            entry.next = DEAD;
            m_holes += Key::granulesOf(entry);
        } else {
            closeGap(entry);
        }
        return value;
    }

    /// Goes over to `capacity` buckets: from the last old bucket to the first, and from the first
    /// entry of each chain on, every entry goes to the front of its new one.
    void rehash(std::int32_t capacity)
    {
        Buckets grown(capacity);
        grown.open();
        chain();
        const std::int32_t none = -1;
        std::int32_t bucket = m_buckets.usedBefore(m_buckets.capacity());
        for (; bucket != none; bucket = m_buckets.usedBefore(bucket)) {
            for (std::uint32_t link = m_buckets.head(bucket); link != NONE;) {
                Entry& entry = at(link);
                const std::uint32_t next = entry.next;
                putFirst(grown, link, entry);
                link = next;
            }
        }
        m_buckets = std::move(grown);
    }

    /// Drops all entries and keeps the number of buckets.
    void clear() { const PackedTable old(std::move(*this)); }

    /// Calls `visit(entry)` for all entries: buckets from the first to the last, each chain from
    /// its front.
    template <class Visit>
    void forEach(Visit visit) const
    {
        if (!m_buckets.isOpen()) return forEachUnchained(visit);
        std::int32_t bucket = m_buckets.usedFrom(0);
        for (; bucket != capacity(); bucket = m_buckets.usedFrom(bucket + 1)) {
            for (std::uint32_t link = m_buckets.head(bucket); link != NONE; link = at(link).next) {
                visit(std::as_const(at(link)));
            }
        }
    }

private:
    static constexpr std::uint32_t NONE = 0xFFFFFFFF;
    static constexpr std::uint32_t DEAD = 0xFFFFFFFE;
    static constexpr std::uint32_t MOST_GRANULES = 0xFFFFFFF0;
    static constexpr std::uint32_t FIRST_GRANULES = 128; ///< in the first block of its own
    static constexpr std::uint32_t OWN_GRANULES = 32;    ///< in the table itself

    using Buckets = BucketArray<std::uint32_t, NONE>;

    /// An entry and what decides its place in a walk.
    struct Placed {
        std::uint32_t bucket;
        const Entry* entry;
    };

    /// Leaves `other` without entries.
    PackedTable(PackedTable&& other) noexcept
        : m_buckets(std::move(other.m_buckets)), m_block(std::move(other.m_block)),
          m_used(std::exchange(other.m_used, 0)), m_room(std::exchange(other.m_room, OWN_GRANULES)),
          m_holes(std::exchange(other.m_holes, 0))
    {
        if (!m_block) std::memcpy(m_own.data(), other.m_own.data(), std::size_t{m_used} * 8);
    }

    std::byte* place(std::uint32_t link) const noexcept
    {
        // find() is const and gives an entry whose value may be changed.
        std::byte* const base = m_block ? m_block.get() : const_cast<std::byte*>(m_own.data());
        return base + std::size_t{link} * 8;
    }
    Entry& at(std::uint32_t link) const noexcept
    {
        return *std::launder(reinterpret_cast<Entry*>(place(link)));
    }
    std::uint32_t linkOf(const Entry& entry) const noexcept
    {
        const auto* const start = reinterpret_cast<const std::byte*>(&entry);
        return static_cast<std::uint32_t>((start - place(0)) / 8);
    }

    template <class Sought>
    Entry* findUnchained(const Sought& key, std::uint32_t hash) const
    {
        for (std::uint32_t link = 0; link != m_used;) {
            Entry& entry = at(link);
            if (entry.hash == hash && key.matches(entry)) return &entry;
            link += Key::granulesOf(entry);
        }
        return nullptr;
    }

    template <class Visit>
    void forEachUnchained(Visit& visit) const
    {
        // The newest entry comes first, and stays before older ones of its bucket.
        std::array<Placed, OWN_GRANULES * 8 / sizeof(PackedEntry)> order;
        std::size_t count = 0;
        const Remainder bucketOf(static_cast<std::uint32_t>(capacity()));
        for (std::uint32_t link = 0; link != m_used; link += Key::granulesOf(at(link))) {
            const Placed placed{bucketOf(at(link).hash), &at(link)};
            std::size_t rank = count++;
            for (; rank > 0 && order[rank - 1].bucket >= placed.bucket; --rank) {
                order[rank] = order[rank - 1];
            }
            order[rank] = placed;
        }
        for (std::size_t i = 0; i < count; ++i) visit(*order[i].entry);
    }

    static void putFirst(Buckets& buckets, std::uint32_t link, Entry& entry) noexcept
    {
        const std::int32_t bucket = buckets.bucketOf(entry.hash);
        entry.next = buckets.head(bucket);
        buckets.setHead(bucket, link);
    }

    void unlink(const Entry& entry) noexcept
    {
        const std::uint32_t link = linkOf(entry);
        const std::int32_t bucket = m_buckets.bucketOf(entry.hash);
        std::uint32_t before = m_buckets.head(bucket);
        if (before == link) {
            if (entry.next == NONE) return m_buckets.setEmpty(bucket);
            return m_buckets.setHead(bucket, entry.next);
        }
        while (at(before).next != link) before = at(before).next;
        at(before).next = entry.next;
    }

    void closeGap(Entry& entry) noexcept
    {
        const std::uint32_t link = linkOf(entry);
        const std::uint32_t gap = Key::granulesOf(entry);
        m_used -= gap;
        std::memmove(place(link), place(link + gap), std::size_t{m_used - link} * 8);
    }

    /// Joins the entries to chains, if they are not yet.
    void chain()
    {
        if (m_buckets.isOpen()) return;
        m_buckets.open();
        for (std::uint32_t link = 0; link != m_used; link += Key::granulesOf(at(link))) {
            putFirst(m_buckets, link, at(link));
        }
    }

    /// Moves the entries to a block of `room` granules, without holes.
    void repack(std::uint32_t room)
    {
        OwningArray<std::byte> block(std::size_t{room} * 8);
        if (m_holes == 0) {
            std::memcpy(block.get(), place(0), std::size_t{m_used} * 8);
        } else {
            m_used = moveChains(block.get());
            m_holes = 0;
        }
        m_block = std::move(block);
        m_room = room;
    }

    /// Copies the entries, chain by chain, to `target`, and returns the granules used there.
    std::uint32_t moveChains(std::byte* target) noexcept
    {
        std::uint32_t used = 0;
        std::int32_t bucket = m_buckets.usedFrom(0);
        for (; bucket != capacity(); bucket = m_buckets.usedFrom(bucket + 1)) {
            std::uint32_t link = m_buckets.head(bucket);
            m_buckets.setHead(bucket, used);
            while (link != NONE) {
                const Entry& entry = at(link);
                const std::uint32_t granules = Key::granulesOf(entry);
                std::byte* const copy = target + std::size_t{used} * 8;
                std::memcpy(copy, &entry, std::size_t{granules} * 8);
                used += granules;
                link = entry.next;
                if (link != NONE) reinterpret_cast<Entry*>(copy)->next = used;
            }
        }
        return used;
    }

    /// Gives the counts on all values back.
    void releaseAll()
    {
        std::uint32_t link = 0;
        dropAll([&] {
            if (link == m_used) return false;
            const Entry& entry = at(link);
            link += Key::granulesOf(entry);
            if (entry.next != DEAD && entry.value != nullptr) entry.value->Release();
            return true;
        });
    }

    Buckets m_buckets;
    OwningArray<std::byte> m_block;
    std::uint32_t m_used = 0;            ///< granules in use, holes included
    std::uint32_t m_room = OWN_GRANULES; ///< granules that fit
    std::uint32_t m_holes = 0;           ///< granules of entries taken out
    alignas(PackedEntry) std::array<std::byte, std::size_t{OWN_GRANULES} * 8> m_own;
};

} // namespace orv::collections::internal
