#pragma once

#include "orv/String.h"
#include "orv/Units.h"
#include "orv/collections/Fwd.h"
#include "orv/collections/PackedTable.h"

#include <cstddef>
#include <cstdint>

namespace orv::collections {

namespace internal {

/// A text to look for.
struct TextKey {
    /// The units follow the length without a gap.
    struct Entry : PackedEntry {
        std::int32_t length;
    };

    ::orv::internal::Units text;

    std::uint32_t granules() const noexcept { return granulesFor(text.length); }
    static std::uint32_t granulesOf(const Entry& entry) noexcept
    {
        return granulesFor(entry.length);
    }
    bool matches(const Entry& entry) const noexcept;
    void store(Entry& entry) const noexcept;

    /// The text in an entry.
    static ::orv::internal::Units of(const Entry& entry) noexcept
    {
        const auto* const start = reinterpret_cast<const std::byte*>(&entry);
        return {reinterpret_cast<const char16_t*>(start + UNITS_AT), entry.length};
    }

private:
    static constexpr std::size_t UNITS_AT = sizeof(PackedEntry) + sizeof(std::int32_t);

    static std::uint32_t granulesFor(std::int32_t length) noexcept
    {
        const std::size_t bytes = UNITS_AT + static_cast<std::size_t>(length) * sizeof(char16_t);
        return static_cast<std::uint32_t>((bytes + 7) / 8);
    }
};

} // namespace internal

/// A hash table from texts to objects, for use inside a class: no comparator, no iterator.
///
///     StringHashMap fields;
///     fields.put(String(u"level"), makeReference<Integer32>(3).get());
///     if (const Reference<Object> level = fields.get(u"level", 5)) { ... }
///
/// Keys are copied and case counts. Long keys hash by a sample of at most 63 units. A new map takes
/// no memory, and the first few entries, six of ten units each, lie in the map itself.
///
/// Ownership: holds a count on each value; a value may be null. Bounds: about 2^31 entries of 20
/// bytes and their text, besides 4 bytes and a bit for each bucket. Errors: OutOfMemoryException
/// leaves the entries as they were, and so does the ResultException of a key that cannot be read.
/// Threads: one at a time.
class ORV_API StringHashMap : public Object {
public:
    /// What a map begins with where nothing better is known.
    static constexpr std::int32_t DEFAULT_CAPACITY = 101;
    static constexpr float DEFAULT_LOAD = 0.75F;

    /// Begins with `capacity` buckets, at least 1. A new key that finds `loadFactor` times as many
    /// entries makes them twice as many and one.
    explicit StringHashMap(std::int32_t capacity = DEFAULT_CAPACITY,
                           float loadFactor = DEFAULT_LOAD);
    StringHashMap(const StringHashMap&) = delete;
    StringHashMap& operator=(const StringHashMap&) = delete;
    ~StringHashMap() noexcept(false) override;

    /// Drops all entries and keeps the buckets. getSize() and isEmpty() keep their old answers, and
    /// growth goes on counting from the old size: for an empty map to count anew take a new one.
    virtual void clear();

    /// The value of the key with these `length` units, -1 for a terminated text; null where there
    /// is none.
    virtual Reference<Object> get(const char16_t* key, std::int32_t length);
    virtual Reference<Object> get(const String& key);

    /// Entries put and not removed; clear() does not lower it.
    virtual std::int32_t getSize() const;

    /// Whether get() gives a value: a key that was put with null counts as absent.
    virtual bool containsKey(const char16_t* key, std::int32_t length) const;
    virtual bool containsKey(const String& key) const;

    /// Whether getSize() is 0.
    virtual bool isEmpty() const;

    /// Gives `key` the value `value` and returns the one before, null where there was none.
    virtual Reference<Object> put(const String& key, Object* value);

    /// Takes the entry of `key` out and returns its value, null where there is none.
    virtual Reference<Object> remove(const String& key);

    /// A set of the keys as they are now, which later changes of the map do not reach.
    virtual Reference<const Set<String>> createKeySet() const;

private:
    using Entry = internal::TextKey::Entry;
    using Units = ::orv::internal::Units;
    struct Sought;

    static std::int32_t calcCapacity(std::int32_t size);
    void rehash();
    std::uint32_t getKeyHashCode(const char16_t* text, std::int32_t length, bool ignoreCase) const;
    bool keysEqual(const String& key, const char16_t* text, std::int32_t length,
                   bool ignoreCase) const;
    Entry* find(const String& key, std::uint32_t hash) const;

    float m_loadFactor;
    std::int32_t m_size = 0;
    std::int32_t m_threshold; ///< entries at which one more makes it grow
    internal::PackedTable<internal::TextKey> m_table;
};

} // namespace orv::collections
