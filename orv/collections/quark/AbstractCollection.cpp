#include "orv/collections/quark/AbstractCollection.h"

#include "orv/Exceptions.h"
#include "orv/collections/DefaultComparator.h"
#include "orv/collections/internal/ElementMatch.h"

#include <cstdint>

namespace orv::collections::quark {

AbstractCollection::AbstractCollection() : m_comparator(GetDefaultComparator()) {}

AbstractCollection::AbstractCollection(const IORVComparator* comparator)
    : m_comparator(const_cast<IORVComparator*>(comparator))
{
}

AbstractCollection::AbstractCollection(const AbstractCollection& other)
    : IORVUnknown(), Collection(), ImplementsVirtual(), m_comparator(other.m_comparator)
{
}

AbstractCollection& AbstractCollection::operator=(const AbstractCollection&) noexcept
{
    return *this;
}

AbstractCollection::~AbstractCollection() noexcept(false) = default;

bool AbstractCollection::add(IORVUnknown*)
{
    throw UnsupportedOperationException();
}

bool AbstractCollection::addAll(const Collection& other)
{
    const bool self = &other == static_cast<const Collection*>(this);
    std::int32_t left = self ? getSize() : INT32_MAX;
    bool changed = false;
    for (IORVUnknown* element : other) {
        if (left-- == 0) break;
        changed |= add(element);
    }
    return changed;
}

void AbstractCollection::clear()
{
    const Reference<Iterator> iterator = createIterator();
    while (iterator->hasNext()) {
        iterator->next();
        iterator->remove();
    }
}

bool AbstractCollection::contains(const IORVUnknown* element) const
{
    const internal::ElementMatch matches(m_comparator.get(), element);
    for (IORVUnknown* own : *this) {
        if (matches(own)) return true;
    }
    return false;
}

// What is handed to comparators is held, for they may take it out of its collection.

bool AbstractCollection::containsAll(const Collection& other) const
{
    for (IORVUnknown* element : other) {
        const Reference<IORVUnknown> held(element);
        if (!contains(element)) return false;
    }
    return true;
}

bool AbstractCollection::remove(const IORVUnknown* element)
{
    const internal::ElementMatch matches(m_comparator.get(), element);
    const Reference<Iterator> iterator = createIterator();
    while (iterator->hasNext()) {
        const Reference<IORVUnknown> own = iterator->next();
        if (!matches(own.get())) continue;
        iterator->remove();
        return true;
    }
    return false;
}

bool AbstractCollection::removeAll(const Collection& other)
{
    bool changed = false;
    for (IORVUnknown* element : other) {
        const Reference<IORVUnknown> held(element);
        changed |= remove(element);
    }
    return changed;
}

bool AbstractCollection::retainAll(const Collection& other)
{
    bool changed = false;
    for (IORVUnknown* element : *this) {
        const Reference<IORVUnknown> held(element);
        if (other.contains(element)) continue;
        remove(element);
        changed = true;
    }
    return changed;
}

std::int32_t AbstractCollection::compareTo(const Object& other) const
{
    return Object::compareTo(other);
}

bool AbstractCollection::equals(const Object& other) const
{
    return Object::equals(other);
}

std::uint32_t AbstractCollection::hashCode() const
{
    return Object::hashCode();
}

} // namespace orv::collections::quark
