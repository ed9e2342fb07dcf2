#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Reference.h"
#include "orv/collections/quark/Collection.h"
#include "orv/collections/quark/Set.h"

#include <cstdint>

namespace orv::collections::quark {

/// Keys with a value each.
///
/// Keys and values are held by their counts and may be null where the map's comparators accept
/// null. Ownership and threads: see Collection.
class ORV_API Map : public virtual IORVUnknown {
public:
    /// Removes all entries.
    virtual void clear() = 0;

    /// The order against `other`. Throws CastFailedException where `other` is no map.
    virtual std::int32_t compareTo(const Object& other) const = 0;

    /// Whether there is an entry for `key`.
    virtual bool containsKey(const IORVUnknown* key) const = 0;

    /// Whether there is an entry with a value that equals `value`.
    virtual bool containsValue(const IORVUnknown* value) const = 0;

    /// A live view of the entries; its elements answer to MapEntry.
    virtual Reference<const Set> createEntrySet() const = 0;
    virtual Reference<Set> createEntrySet() = 0;

    /// A live view of the keys.
    virtual Reference<const Set> createKeySet() const = 0;
    virtual Reference<Set> createKeySet() = 0;

    /// A live view of the values.
    virtual Reference<const Collection> createValueCollection() const = 0;
    virtual Reference<Collection> createValueCollection() = 0;

    /// Whether `other` is a map with equal entries.
    virtual bool equals(const Object& other) const = 0;

    /// The value of `key`, null without an entry.
    virtual Reference<IORVUnknown> get(const IORVUnknown* key) = 0;

    /// The number of entries.
    virtual std::int32_t getSize() const = 0;

    /// A hash that equal maps share.
    virtual std::uint32_t hashCode() const = 0;

    /// Gives `key` the value `value`; returns the value before, null without one. Throws
    /// UnsupportedOperationException where the map takes none.
    virtual Reference<IORVUnknown> put(IORVUnknown* key, IORVUnknown* value) = 0;

    /// Puts the entries of `other` one by one.
    virtual void putAll(const Map& other) = 0;

    /// Removes the entry of `key`; returns its value, null without an entry.
    virtual Reference<IORVUnknown> remove(const IORVUnknown* key) = 0;

    /// Whether there are no entries.
    bool isEmpty() const { return getSize() == 0; }

protected:
    Map() = default;
    Map(const Map&) = default;
    Map& operator=(const Map&) = default;
    ~Map() = default;
};

} // namespace orv::collections::quark
