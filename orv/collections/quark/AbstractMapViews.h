#pragma once

#include "orv/collections/quark/AbstractCollection.h"
#include "orv/collections/quark/AbstractMap.h"
#include "orv/collections/quark/AbstractSet.h"

/// \file
/// The live views of a map. They take no elements; what is removed from them is removed from the
/// map, after a walk over all entries.

namespace orv::collections::quark {

/// The keys of a map.
class ORV_API AbstractMapKeySet : public AbstractSet {
public:
    /// A view on `map`, of which a count is taken, with its comparator of keys.
    explicit AbstractMapKeySet(const AbstractMap* map);
    AbstractMapKeySet(const AbstractMapKeySet& other) = delete;
    AbstractMapKeySet& operator=(const AbstractMapKeySet& other) = delete;
    ~AbstractMapKeySet() noexcept(false) override;

    bool contains(const IORVUnknown* key) const override;
    Reference<Iterator> createIterator() override;
    Reference<ConstIterator> createConstIterator() const override;
    std::int32_t getSize() const override;

private:
    class KeySetIterator;

    Reference<AbstractMap> m_map;
};

/// The values of a map.
class ORV_API AbstractMapValueCollection : public AbstractCollection {
public:
    /// A view on `map`, of which a count is taken, with its comparator of values.
    explicit AbstractMapValueCollection(const AbstractMap* map);
    AbstractMapValueCollection(const AbstractMapValueCollection& other) = delete;
    AbstractMapValueCollection& operator=(const AbstractMapValueCollection& other) = delete;
    ~AbstractMapValueCollection() noexcept(false) override;

    bool contains(const IORVUnknown* value) const override;
    Reference<Iterator> createIterator() override;
    Reference<ConstIterator> createConstIterator() const override;
    std::int32_t getSize() const override;

private:
    class ValueCollectionIterator;

    Reference<AbstractMap> m_map;
};

} // namespace orv::collections::quark
