#include "orv/collections/quark/ElementCursor.h"

#include "orv/collections/quark/Collection.h"

namespace orv::collections::quark {

ElementCursor::ElementCursor(const Collection& collection)
    : m_iterator(collection.createConstIterator())
{
    step();
}

void ElementCursor::step()
{
    m_atEnd = !m_iterator->hasNext();
    m_held = m_atEnd ? nullptr : m_iterator->next();
    m_element = m_held.get();
}

} // namespace orv::collections::quark
