#include "orv/collections/quark/AbstractList.h"

#include "orv/Exception.h"
#include "orv/collections/internal/ElementMatch.h"
#include "orv/collections/internal/Index.h"

namespace orv::collections::quark {

using internal::compareBy;
using internal::equalBy;
using internal::hashBy;

AbstractList::AbstractList() = default;

AbstractList::AbstractList(const IORVComparator* comparator) : ImplementsVirtual(comparator) {}

AbstractList::AbstractList(const AbstractList& other)
    : IORVUnknown(), Collection(), List(), ImplementsVirtual(other)
{
}

AbstractList& AbstractList::operator=(const AbstractList&) noexcept
{
    return *this;
}

AbstractList::~AbstractList() noexcept(false) = default;

bool AbstractList::add(IORVUnknown* element)
{
    createListIterator(getSize())->add(element);
    return true;
}

bool AbstractList::addAll(std::int32_t index, const Collection& other)
{
    internal::checkPlace(index, getSize());
    const Reference<ListIterator> iterator = createListIterator(index);
    bool changed = false;
    for (IORVUnknown* element : other) {
        iterator->add(element);
        changed = true;
    }
    return changed;
}

bool AbstractList::remove(const IORVUnknown* element)
{
    if (!ElementCursor::walksDirectly(*this)) return AbstractCollection::remove(element);

    const std::int32_t expectedModCount = m_modCount;
    const std::int32_t index = indexOf(element);
    if (index < 0) return false;
    if (m_modCount != expectedModCount) throw Exception();
    remove(index);
    return true;
}

std::int32_t AbstractList::indexOf(const IORVUnknown* element) const
{
    const internal::ElementMatch matches(m_comparator.get(), element);
    std::int32_t index = 0;
    for (IORVUnknown* own : *this) {
        if (matches(own)) return index;
        ++index;
    }
    return -1;
}

std::int32_t AbstractList::lastIndexOf(const IORVUnknown* element) const
{
    const Reference<ConstListIterator> iterator = createConstListIterator(getSize());
    while (iterator->hasPrevious()) {
        const Reference<IORVUnknown> own = iterator->previous();
        if (equalBy(m_comparator.get(), own.get(), element)) return iterator->nextIndex();
    }
    return -1;
}

std::int32_t AbstractList::compareTo(const Object& other) const
{
    if (&other == static_cast<const Object*>(this)) return 0;
    const auto* const list = dynamic_cast<const List*>(&other);
    if (list == nullptr) throwCastFailed();
    return compareToList(*list);
}

bool AbstractList::equals(const Object& other) const
{
    if (&other == static_cast<const Object*>(this)) return true;
    const auto* const list = dynamic_cast<const List*>(&other);
    return list != nullptr && getSize() == list->getSize() && compareToList(*list) == 0;
}

std::uint32_t AbstractList::hashCode() const
{
    std::uint32_t hash = 1;
    for (IORVUnknown* borrowed : *this) {
        const Reference<IORVUnknown> own(borrowed);
        hash = hash * 38 + hashBy(m_comparator.get(), own.get());
    }
    return hash;
}

std::int32_t AbstractList::compareToList(const List& other) const
{
    ElementCursor left(*this);
    ElementCursor right(other);
    while (left != std::default_sentinel && right != std::default_sentinel) {
        const Reference<IORVUnknown> a(*left);
        const Reference<IORVUnknown> b(*right);
        const std::int32_t order = compareBy(m_comparator.get(), a.get(), b.get());
        if (order != 0) return order;
        ++left;
        ++right;
    }
    if (left != std::default_sentinel) return 1;
    return right != std::default_sentinel ? -1 : 0;
}

} // namespace orv::collections::quark
