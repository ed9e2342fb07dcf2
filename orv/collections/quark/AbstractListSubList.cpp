#include "orv/collections/quark/AbstractListSubList.h"

#include "orv/Exception.h"
#include "orv/collections/internal/Index.h"

namespace orv::collections::quark {

using internal::checkIndex;
using internal::checkPlace;

/// Walks the parent's part by an iterator of the parent.
class AbstractListSubList::SubListIterator
    : public ::orv::quark::ImplementsVirtual<ComObject, ListIterator> {
public:
    SubListIterator(AbstractListSubList* list, std::int32_t index)
        : m_list(list), m_inner(list->m_parent->createListIterator(list->m_offset + index))
    {
    }
    SubListIterator(const SubListIterator&) = delete;
    SubListIterator& operator=(const SubListIterator&) = delete;

    bool hasNext() override { return nextIndex() < m_list->getSize(); }
    Reference<IORVUnknown> next() override
    {
        if (!hasNext()) throw Exception();
        return m_inner->next();
    }

    bool hasPrevious() override { return previousIndex() >= 0; }
    Reference<IORVUnknown> previous() override
    {
        if (!hasPrevious()) throw Exception();
        return m_inner->previous();
    }

    std::int32_t nextIndex() override { return m_inner->nextIndex() - m_list->m_offset; }
    std::int32_t previousIndex() override { return m_inner->previousIndex() - m_list->m_offset; }

    void remove() override
    {
        m_inner->remove();
        m_list->resized(-1);
    }
    void add(IORVUnknown* element) override
    {
        m_inner->add(element);
        m_list->resized(1);
    }
    void set(IORVUnknown* element) override { m_inner->set(element); }

private:
    Reference<AbstractListSubList> m_list;
    Reference<ListIterator> m_inner;
};

AbstractListSubList::AbstractListSubList(const AbstractList* parent, std::int32_t from,
                                         std::int32_t to)
    : AbstractList(parent->m_comparator.get()), m_parent(const_cast<AbstractList*>(parent)),
      m_expectedModCount(parent->m_modCount), m_offset(from), m_size(to - from)
{
}

AbstractListSubList::~AbstractListSubList() noexcept(false) = default;

void AbstractListSubList::checkModified() const
{
    if (m_expectedModCount != m_parent->m_modCount) throw Exception();
}

void AbstractListSubList::resized(std::int32_t difference)
{
    m_size += difference;
    ++m_expectedModCount;
}

bool AbstractListSubList::add(std::int32_t index, IORVUnknown* element)
{
    checkPlace(index, m_size);
    checkModified();
    if (!m_parent->add(m_offset + index, element)) return false;
    resized(1);
    return true;
}

Reference<ListIterator> AbstractListSubList::createListIterator(std::int32_t index)
{
    checkPlace(index, m_size);
    return makeReference<SubListIterator>(this, index);
}

Reference<IORVUnknown> AbstractListSubList::get(std::int32_t index)
{
    checkIndex(index, m_size);
    checkModified();
    return m_parent->get(m_offset + index);
}

std::int32_t AbstractListSubList::getSize() const
{
    return m_size;
}

Reference<IORVUnknown> AbstractListSubList::remove(std::int32_t index)
{
    checkIndex(index, m_size);
    checkModified();
    Reference<IORVUnknown> removed = m_parent->remove(m_offset + index);
    resized(-1);
    return removed;
}

Reference<IORVUnknown> AbstractListSubList::set(std::int32_t index, IORVUnknown* element)
{
    checkIndex(index, m_size);
    checkModified();
    Reference<IORVUnknown> replaced = m_parent->set(m_offset + index, element);
    ++m_expectedModCount;
    return replaced;
}

namespace {

void checkRange(std::int32_t from, std::int32_t to, std::int32_t size)
{
    if (from < 0 || from > to || to > size) throwRange();
}

} // namespace

Reference<const List> AbstractList::createSubList(std::int32_t from, std::int32_t to) const
{
    checkRange(from, to, getSize());
    return makeReference<AbstractListSubList>(this, from, to);
}

Reference<List> AbstractList::createSubList(std::int32_t from, std::int32_t to)
{
    checkRange(from, to, getSize());
    return makeReference<AbstractListSubList>(this, from, to);
}

} // namespace orv::collections::quark
