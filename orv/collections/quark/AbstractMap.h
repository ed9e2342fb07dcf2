#pragma once

#include "orv/IORVComparator.h"
#include "orv/Object.h"
#include "orv/collections/quark/Map.h"
#include "orv/collections/quark/MapEntry.h"

namespace orv::collections::quark {

/// A map out of the set of its entries: what remains to be written is createEntrySet() and, where
/// it takes entries, put().
///
/// Every operation walks the entries; a map that knows better overrides it.
class ORV_API AbstractMap : public ::orv::quark::ImplementsVirtual<Object, Map> {
public:
    ~AbstractMap() noexcept(false) override;

    void clear() override;
    bool containsKey(const IORVUnknown* key) const override;
    bool containsValue(const IORVUnknown* value) const override;
    Reference<const Set> createKeySet() const override;
    Reference<Set> createKeySet() override;
    Reference<const Collection> createValueCollection() const override;
    Reference<Collection> createValueCollection() override;
    Reference<IORVUnknown> get(const IORVUnknown* key) override;
    std::int32_t getSize() const override;

    /// Throws UnsupportedOperationException.
    Reference<IORVUnknown> put(IORVUnknown* key, IORVUnknown* value) override;
    void putAll(const Map& other) override;

    /// Removes every entry whose key equals `key`, should there be several; returns the value of
    /// the last of them.
    Reference<IORVUnknown> remove(const IORVUnknown* key) override;

    /// Goes through this map's entries: the first value that differs from that of `other` decides,
    /// a missing one counting as null; with all alike the smaller map comes first. Throws
    /// CastFailedException where `other` is no map.
    std::int32_t compareTo(const Object& other) const override;
    bool equals(const Object& other) const override;

    /// The sum of the entries' hashes, wrapping.
    std::uint32_t hashCode() const override;

protected:
    /// With the default comparator for keys and values.
    AbstractMap();

    /// With these comparators, of which a count is taken. Null fails at its first use, with
    /// ResultException.
    AbstractMap(const IORVComparator* keyComparator, const IORVComparator* valueComparator);

    /// With the comparators of `other`, and none of its entries.
    AbstractMap(const AbstractMap& other);

    /// Changes nothing, as the assignment of Object.
    AbstractMap& operator=(const AbstractMap& other) noexcept;

    /// What compareTo() says of two maps.
    std::int32_t compareToMap(const Map& other) const;

    /// Decide which keys and which values are equal.
    Reference<IORVComparator> m_keyComparator;
    Reference<IORVComparator> m_valueComparator;

    /// Counts the modifications, by which iterators notice them.
    std::int32_t m_modCount = 0;

private:
    friend class AbstractMapKeySet;
    friend class AbstractMapValueCollection;
};

} // namespace orv::collections::quark
