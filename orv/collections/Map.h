#pragma once

#include "orv/collections/Set.h"
#include "orv/collections/quark/Map.h"
#include "orv/collections/quark/MapEntry.h"

namespace orv::collections {

/// A key with its value, as a range-based `for` over a Map gives them.
template <class K, class V>
struct MapEntry {
    Reference<K> key;
    Reference<V> value;
};

/// What a range-based `for` walks a typed map with.
template <class K, class V>
class MapCursor {
public:
    using value_type = MapEntry<K, V>;
    using difference_type = std::ptrdiff_t;

    explicit MapCursor(const quark::Map& map) : m_cursor(*map.createEntrySet()) {}

    /// The entry. Throws CastFailedException where key or value are of another class.
    MapEntry<K, V> operator*() const
    {
        auto* const entry = elementCast<quark::MapEntry>(*m_cursor);
        if (entry == nullptr) throwCastFailed();
        return {elementCast<K>(entry->getKey().get()), elementCast<V>(entry->getValue().get())};
    }

    MapCursor& operator++()
    {
        ++m_cursor;
        return *this;
    }
    void operator++(int) { ++m_cursor; }

    friend bool operator==(const MapCursor& cursor, std::default_sentinel_t end) noexcept
    {
        return cursor.m_cursor == end;
    }

private:
    quark::ElementCursor m_cursor;
};

/// A map from keys of the class `K` to values of the class `V`, both Objects, over an untyped one.
///
///     Map<String, Integer32> ages(makeReference<quark::HashMap>().get());
///     ages.put(name.get(), makeReference<Integer32>(36).get());
///     for (const auto& [key, value] : ages) { ... }
///
/// Passes every operation on, and so does what the untyped map does. A key or value that got in as
/// something else throws CastFailedException where it is given out.
///
/// Ownership and threads: those of the untyped map, of which a count is held.
template <class K, class V>
class ORV_API Map : public Object {
public:
    explicit Map(quark::Map* map) : m_map(map) {}

    /// Those of the untyped map, against the one within `other` where that is typed too.
    std::int32_t compareTo(const Object& other) const override
    {
        return m_map->compareTo(untyped(other));
    }
    bool equals(const Object& other) const override { return m_map->equals(untyped(other)); }
    std::uint32_t hashCode() const override { return m_map->hashCode(); }

    /// Removes all entries.
    virtual void clear() { m_map->clear(); }
    /// Whether there is an entry for `key`.
    virtual bool containsKey(const K* key) const { return m_map->containsKey(toUnknown(key)); }
    /// Whether there is an entry with a value that equals `value`.
    virtual bool containsValue(const V* value) const
    {
        return m_map->containsValue(toUnknown(value));
    }

    /// Live views.
    virtual Reference<const Set<K>> createKeySet() const
    {
        return makeReference<const Set<K>>(m_map->createKeySet().get());
    }
    virtual Reference<Set<K>> createKeySet()
    {
        return makeReference<Set<K>>(m_map->createKeySet().get());
    }
    virtual Reference<const Collection<V>> createValueCollection() const
    {
        return makeReference<const Collection<V>>(m_map->createValueCollection().get());
    }
    virtual Reference<Collection<V>> createValueCollection()
    {
        return makeReference<Collection<V>>(m_map->createValueCollection().get());
    }

    /// The value of `key`, null without an entry.
    virtual Reference<V> get(const K* key) const { return typed(m_map->get(toUnknown(key))); }
    /// The number of entries.
    virtual std::int32_t getSize() const { return m_map->getSize(); }
    /// Whether there are no entries.
    virtual bool isEmpty() const { return m_map->isEmpty(); }

    /// Gives `key` the value `value`; returns the value before, null without one.
    virtual Reference<V> put(K* key, V* value)
    {
        return typed(m_map->put(toUnknown(key), toUnknown(value)));
    }
    /// Puts the entries of `other` one by one.
    virtual void putAll(const Map& other) { m_map->putAll(*other.m_map); }

    /// Removes the entry of `key`; returns its value, null without an entry.
    virtual Reference<V> remove(const K* key) { return typed(m_map->remove(toUnknown(key))); }

    /// The walk of a range-based `for`, over the entries.
    MapCursor<K, V> begin() const { return MapCursor<K, V>(*m_map); }
    static std::default_sentinel_t end() noexcept { return std::default_sentinel; }

    /// The untyped map, borrowed.
    quark::Map* getUntyped() const noexcept { return m_map.get(); }

private:
    static Reference<V> typed(const Reference<IORVUnknown>& value)
    {
        return elementCast<V>(value.get());
    }

    static const Object& untyped(const Object& other)
    {
        const auto* const map = dynamic_cast<const Map*>(&other);
        if (map == nullptr) return other;
        const auto* const object = dynamic_cast<const Object*>(map->m_map.get());
        if (object == nullptr) throwCastFailed();
        return *object;
    }

    Reference<quark::Map> m_map;
};

} // namespace orv::collections
