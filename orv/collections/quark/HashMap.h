#pragma once

#include "orv/collections/BucketArray.h"
#include "orv/collections/quark/AbstractMap.h"
#include "orv/collections/quark/HashMapEntry.h"

namespace orv::collections::quark {

/// A chained hash table.
///
///     auto ports = makeReference<HashMap>();
///     ports->put(toUnknown(name.get()), toUnknown(port.get()));
///     const Reference<IORVUnknown> found = ports->get(toUnknown(name.get()));
///
/// A key is in the bucket that its hash leaves as the remainder by their number; nothing is mixed
/// in. Walks go from the last bucket to the first, and in each from the entry put last. A new key
/// that finds as many entries as the load allows makes n buckets 2n + 1. A look-up asks the
/// comparator for one hash, and for one comparison with each key of the same hash; growing asks
/// nothing.
///
/// Ownership: holds a count on keys and values, which may be null where the comparator accepts it.
/// A map that anything iterates stands on the heap; so does one that is copied by way of Map.
///
/// Bounds: about 2^30 buckets. An entry takes 64 bytes besides 8 bytes and a bit for each bucket;
/// an empty map takes none. Errors: a failing comparator is a ResultException, lack of memory an
/// OutOfMemoryException, and both leave the map as it was. Threads: one at a time, or any number
/// that only read.
class ORV_API HashMap : public AbstractMap {
public:
    /// What a map begins with where nothing better is known.
    static constexpr std::int32_t DEFAULT_CAPACITY = 101;
    static constexpr float DEFAULT_LOAD = 0.75F;

    /// With the default comparator for keys and values. A capacity below 1 is 1.
    explicit HashMap(std::int32_t capacity = DEFAULT_CAPACITY, float loadFactor = DEFAULT_LOAD);

    /// With these comparators, as AbstractMap takes them.
    HashMap(const IORVComparator* keyComparator, const IORVComparator* valueComparator,
            std::int32_t capacity, float loadFactor);

    /// With the entries of `source`: 11 buckets for up to five of them, else twice their number.
    HashMap(const Map& source, float loadFactor);
    HashMap(const Map& source, const IORVComparator* keyComparator,
            const IORVComparator* valueComparator, float loadFactor);

    /// With the comparators, the number of buckets and the entries of `source`.
    HashMap(const HashMap& source);
    HashMap& operator=(const HashMap& other) = delete;
    ~HashMap() noexcept(false) override;

    /// Drops all entries and keeps the buckets. This is no modification, and getSize() keeps its
    /// answer: it and growth go on counting from the old size, and an iterator finds nothing more,
    /// or what was put since. To count anew take a new map, or clear a view.
    void clear() override;

    bool containsKey(const IORVUnknown* key) const override;
    bool containsValue(const IORVUnknown* value) const override;
    Reference<const Set> createEntrySet() const override;
    Reference<Set> createEntrySet() override;

    /// The value of `key`, null without an entry.
    Reference<IORVUnknown> get(const IORVUnknown* key) override;

    /// Entries put and not removed; clear() does not lower it.
    std::int32_t getSize() const override;

    /// Gives `key` the value `value`; returns the value before, null without one. An entry that is
    /// there keeps its key, and this is no modification then.
    Reference<IORVUnknown> put(IORVUnknown* key, IORVUnknown* value) override;

    Reference<IORVUnknown> remove(const IORVUnknown* key) override;

private:
    friend class HashMapIterator;
    friend class HashMapEntrySet;

    using Buckets = internal::BucketArray<HashMapEntry*, nullptr>;

    static std::int32_t calcCapacity(std::int32_t size);
    std::uint32_t getKeyHashCode(const IORVUnknown* key) const;
    std::uint32_t getValueHashCode(const IORVUnknown* value) const;
    bool keysEqual(const IORVUnknown* a, const IORVUnknown* b) const;
    bool valuesEqual(const IORVUnknown* a, const IORVUnknown* b) const;
    void allocTable(std::int32_t capacity);
    void rehash();
    void removeEntry(HashMapEntry* entry, HashMapEntry* previous, std::int32_t bucket);
    bool containsEntry(const IORVUnknown* element) const;

    HashMapEntry* find(const IORVUnknown* key, std::uint32_t hash) const;
    HashMapEntry* previousOf(const HashMapEntry* entry, std::int32_t bucket) const;
    void putFirst(HashMapEntry* entry) noexcept;
    void drop(HashMapEntry* entry);
    void dropEntries(Buckets& buckets);

    float m_loadFactor;
    std::int32_t m_size = 0;
    std::int32_t m_threshold = 0;
    std::int32_t m_tables = 0; ///< counts clear(), which iterators must not notice otherwise
    Buckets m_buckets{1};
    internal::EntryPool* m_pool = nullptr; ///< made with the first entry
    bool m_directKeys;                     ///< the comparator of keys is the library's own
    bool m_directValues;                   ///< the comparator of values is
};

} // namespace orv::collections::quark
