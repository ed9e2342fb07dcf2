#pragma once

#include "orv/IORVComparator.h"
#include "orv/Object.h"
#include "orv/collections/quark/Collection.h"

namespace orv::collections::quark {

/// A collection out of its iterators: what remains to be written is getSize(), createIterator(),
/// createConstIterator() and, where it takes elements, add().
///
/// Order, equality and hash are those of the object, not of the elements.
class ORV_API AbstractCollection : public ::orv::quark::ImplementsVirtual<Object, Collection> {
public:
    ~AbstractCollection() noexcept(false) override;

    /// Throws UnsupportedOperationException.
    bool add(IORVUnknown* element) override;

    /// Calls add() for each element that `other` has; where `other` is this collection, for each
    /// that it had at the start.
    bool addAll(const Collection& other) override;

    /// Removes the elements one by one through an iterator.
    void clear() override;

    bool contains(const IORVUnknown* element) const override;
    bool containsAll(const Collection& other) const override;
    bool remove(const IORVUnknown* element) override;
    bool removeAll(const Collection& other) override;
    bool retainAll(const Collection& other) override;

    std::int32_t compareTo(const Object& other) const override;
    bool equals(const Object& other) const override;
    std::uint32_t hashCode() const override;

protected:
    /// With the default comparator.
    AbstractCollection();

    /// With `comparator`, of which a count is taken. Null fails at its first use, with
    /// ResultException.
    explicit AbstractCollection(const IORVComparator* comparator);

    /// With the comparator of `other`, and none of its elements.
    AbstractCollection(const AbstractCollection& other);

    /// Changes nothing, as the assignment of Object.
    AbstractCollection& operator=(const AbstractCollection& other) noexcept;

    /// Decides which elements are equal.
    Reference<IORVComparator> m_comparator;
};

} // namespace orv::collections::quark
