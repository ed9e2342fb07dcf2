#pragma once

#include "compat/CORVSmartPtr.h"
#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/ElementCast.h"
#include "orv/collections/quark/HashMap.h"

#include <cstdint>

/// A hash map from keys of the class `K` to values of the class `V`, both objects on the heap.
///
///     CORVObjectMap<orv::String, orv::Integer32> ages;
///     ages.put(name.get(), age.get());
///     CORVSmartPtr<orv::Integer32> found = ages.get(name.get());
///
/// Keys are compared as GetDefaultComparator() does: by their value, where their class has one. A
/// key or value that got into the table as something else throws CastFailedException where it is
/// given out.
///
/// Ownership: holds a count on keys and values, which may be null. What is looked for is on the
/// heap too, and held by the caller. Copies share one table. Errors: OutOfMemoryException leaves
/// the map as it was. Threads: one at a time for maps that share a table.
template <class K, class V>
class CORVObjectMap {
    using HashMap = orv::collections::quark::HashMap;

public:
    /// An empty map that begins with `capacity` buckets; below 1 is 1.
    explicit CORVObjectMap(std::int32_t capacity = HashMap::DEFAULT_CAPACITY,
                           float loadFactor = HashMap::DEFAULT_LOAD)
        : m_table(orv::makeReference<HashMap>(capacity, loadFactor))
    {
    }

    /// Gives `key` the value `value`; returns the value before, null without one.
    CORVSmartPtr<V> put(K* key, V* value)
    {
        return typed(m_table->put(orv::toUnknown(key), orv::toUnknown(value)));
    }
    /// The value of `key`, null without an entry.
    CORVSmartPtr<V> get(const K* key) const { return typed(m_table->get(orv::toUnknown(key))); }
    /// Whether there is an entry for `key`.
    bool containsKey(const K* key) const { return m_table->containsKey(orv::toUnknown(key)); }
    /// Whether there is an entry with a value that equals `value`.
    bool containsValue(const V* value) const
    {
        return m_table->containsValue(orv::toUnknown(value));
    }
    /// Removes the entry of `key`; returns its value, null without an entry.
    CORVSmartPtr<V> remove(const K* key) { return typed(m_table->remove(orv::toUnknown(key))); }
    /// Drops all entries; getSize() goes on counting from the size before, as HashMap::clear()
    /// does.
    void clear() { m_table->clear(); }

    /// Entries put and not removed; clear() does not lower it.
    std::int32_t getSize() const { return m_table->getSize(); }
    /// Whether getSize() is 0.
    bool isEmpty() const { return m_table->isEmpty(); }

    /// The table, borrowed, for walks and views.
    HashMap* getTable() const noexcept { return m_table.get(); }

private:
    static CORVSmartPtr<V> typed(const orv::Reference<orv::IORVUnknown>& value)
    {
        return orv::collections::elementCast<V>(value.get());
    }

    orv::Reference<HashMap> m_table;
};
