#include "orv/collections/quark/AbstractSet.h"

namespace orv::collections::quark {

AbstractSet::AbstractSet() = default;

AbstractSet::AbstractSet(const IORVComparator* comparator) : ImplementsVirtual(comparator) {}

AbstractSet::AbstractSet(const AbstractSet& other) = default;

AbstractSet::~AbstractSet() noexcept(false) = default;

std::int32_t AbstractSet::compareTo(const Object& other) const
{
    return AbstractCollection::compareTo(other);
}

bool AbstractSet::equals(const Object& other) const
{
    return AbstractCollection::equals(other);
}

std::uint32_t AbstractSet::hashCode() const
{
    return AbstractCollection::hashCode();
}

} // namespace orv::collections::quark
