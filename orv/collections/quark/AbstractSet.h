#pragma once

#include "orv/collections/quark/AbstractCollection.h"
#include "orv/collections/quark/Set.h"

namespace orv::collections::quark {

/// AbstractCollection for sets. Order, equality and hash stay those of the object.
class ORV_API AbstractSet : public ::orv::quark::ImplementsVirtual<AbstractCollection, Set> {
public:
    ~AbstractSet() noexcept(false) override;

    std::int32_t compareTo(const Object& other) const override;
    bool equals(const Object& other) const override;
    std::uint32_t hashCode() const override;

protected:
    /// As AbstractCollection's.
    AbstractSet();
    explicit AbstractSet(const IORVComparator* comparator);
    AbstractSet(const AbstractSet& other);
    AbstractSet& operator=(const AbstractSet& other) noexcept = default;
};

} // namespace orv::collections::quark
