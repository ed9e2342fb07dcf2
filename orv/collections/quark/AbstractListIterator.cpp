#include "orv/collections/quark/AbstractListIterator.h"

#include "orv/Exceptions.h"
#include "orv/collections/internal/Index.h"

namespace orv::collections::quark {

AbstractListIterator::AbstractListIterator(const AbstractList* list, std::int32_t index)
    : m_list(const_cast<AbstractList*>(list)), m_expectedModCount(list->m_modCount), m_cursor(index)
{
}

AbstractListIterator::~AbstractListIterator() noexcept(false) = default;

void AbstractListIterator::checkModified() const
{
    if (m_expectedModCount != m_list->m_modCount) throw Exception();
}

void AbstractListIterator::checkGiven() const
{
    checkModified();
    if (m_lastRet == -1) throw IllegalStateException();
}

bool AbstractListIterator::hasNext()
{
    return m_cursor < m_list->getSize();
}

Reference<IORVUnknown> AbstractListIterator::next()
{
    checkModified();
    Reference<IORVUnknown> element = m_list->get(m_cursor);
    m_lastRet = m_cursor++;
    return element;
}

bool AbstractListIterator::hasPrevious()
{
    return m_cursor > 0;
}

Reference<IORVUnknown> AbstractListIterator::previous()
{
    checkModified();
    Reference<IORVUnknown> element = m_list->get(m_cursor - 1);
    m_lastRet = --m_cursor;
    return element;
}

std::int32_t AbstractListIterator::nextIndex()
{
    return m_cursor;
}

std::int32_t AbstractListIterator::previousIndex()
{
    return m_cursor - 1;
}

void AbstractListIterator::remove()
{
    checkGiven();
    const Reference<IORVUnknown> removed = m_list->remove(m_lastRet);
    if (m_cursor > m_lastRet) --m_cursor;
    m_lastRet = -1;
    ++m_expectedModCount;
}

void AbstractListIterator::add(IORVUnknown* element)
{
    checkModified();
    if (!m_list->add(m_cursor, element)) return;
    ++m_cursor;
    ++m_expectedModCount;
    m_lastRet = -1;
}

void AbstractListIterator::set(IORVUnknown* element)
{
    checkGiven();
    const Reference<IORVUnknown> replaced = m_list->set(m_lastRet, element);
    ++m_expectedModCount;
}

Reference<Iterator> AbstractList::createIterator()
{
    return makeReference<AbstractListIterator>(this, 0);
}

Reference<ConstIterator> AbstractList::createConstIterator() const
{
    return makeReference<AbstractListIterator>(this, 0);
}

Reference<ListIterator> AbstractList::createListIterator(std::int32_t index)
{
    internal::checkPlace(index, getSize());
    return makeReference<AbstractListIterator>(this, index);
}

Reference<ConstListIterator> AbstractList::createConstListIterator(std::int32_t index) const
{
    internal::checkPlace(index, getSize());
    return makeReference<AbstractListIterator>(this, index);
}

} // namespace orv::collections::quark
