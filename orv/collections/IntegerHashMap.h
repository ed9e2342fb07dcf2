#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/Fwd.h"
#include "orv/collections/PackedTable.h"

#include <cstdint>

namespace orv {
class Integer32;
}

namespace orv::collections {

namespace internal {

/// A number to look for. It is its own hash.
struct IntegerKey {
    using Entry = PackedEntry;

    std::uint32_t granules() const noexcept { return sizeof(Entry) / 8; }
    static std::uint32_t granulesOf(const Entry&) noexcept { return sizeof(Entry) / 8; }
    bool matches(const Entry&) const noexcept { return true; }
    void store(Entry&) const noexcept {}
};

} // namespace internal

/// A hash table from 32-bit numbers to objects, for use inside a class: no comparator, no iterator.
///
///     IntegerHashMap handlers;
///     handlers.put(17, handler.get());
///     if (const Reference<Object> found = handlers.get(17)) { ... }
///
/// Ownership: holds a count on each value; a value may be null. Bounds: about 2^31 entries, 16
/// bytes each besides 4 bytes and a bit for each bucket; the first sixteen lie in the map itself.
/// Errors: OutOfMemoryException leaves the entries as they were. Threads: one at a time.
class ORV_API IntegerHashMap : public Object {
public:
    /// What a map begins with where nothing better is known.
    static constexpr std::int32_t DEFAULT_CAPACITY = 101;
    static constexpr float DEFAULT_LOAD = 0.75F;

    /// Begins with `capacity` buckets, at least 1. A new key that finds `loadFactor` times as many
    /// entries makes them twice as many and one.
    explicit IntegerHashMap(std::int32_t capacity = DEFAULT_CAPACITY,
                            float loadFactor = DEFAULT_LOAD);
    IntegerHashMap(const IntegerHashMap&) = delete;
    IntegerHashMap& operator=(const IntegerHashMap&) = delete;
    ~IntegerHashMap() noexcept(false) override;

    /// Drops all entries and keeps the buckets. getSize() and isEmpty() keep their old answers, and
    /// growth goes on counting from the old size: for an empty map to count anew take a new one.
    virtual void clear();

    /// The value of `key`, null where there is none.
    virtual Reference<Object> get(std::int32_t key);

    /// Entries put and not removed; clear() does not lower it.
    virtual std::int32_t getSize() const;

    /// Whether getSize() is 0.
    virtual bool isEmpty() const;

    /// Gives `key` the value `value` and returns the one before, null where there was none.
    virtual Reference<Object> put(std::int32_t key, Object* value);

    /// Takes the entry of `key` out and returns its value, null where there is none.
    virtual Reference<Object> remove(std::int32_t key);

    /// A set of the keys as they are now, which later changes of the map do not reach.
    virtual Reference<const Set<Integer32>> createKeySet() const;

private:
    static std::int32_t calcCapacity(std::int32_t size);
    void rehash();
    std::uint32_t getKeyHashCode(std::int32_t key) const;
    bool keysEqual(std::int32_t a, std::int32_t b) const;

    float m_loadFactor;
    std::int32_t m_size = 0;
    std::int32_t m_threshold; ///< entries at which one more makes it grow
    internal::PackedTable<internal::IntegerKey> m_table;
};

} // namespace orv::collections
