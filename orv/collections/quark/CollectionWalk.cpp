#include "orv/Exception.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/LinkedList.h"

#include <typeinfo>

namespace orv::collections::quark {

namespace {

/// `collection` as the `ConcreteList` that it is known to be exactly.
template <class ConcreteList>
const ConcreteList& exactly(const Collection& collection) noexcept
{
    return *static_cast<const ConcreteList*>(dynamic_cast<const void*>(&collection));
}

} // namespace

bool ElementCursor::walksDirectly(const Collection& collection) noexcept
{
    const std::type_info& type = typeid(collection);
    return type == typeid(ArrayList) || type == typeid(LinkedList);
}

template <class ConcreteList>
void ElementCursor::holdList(const ConcreteList& list)
{
    if (list.GetRefCount() != 0) m_list = Reference<const ComObject>(&list);
    m_size = &list.m_size;
    m_modCount = &list.m_modCount;
    m_expectedModCount = list.m_modCount;
}

ElementCursor::ElementCursor(const Collection& collection)
{
    const std::type_info& type = typeid(collection);
    if (type == typeid(ArrayList)) {
        const auto& list = exactly<ArrayList>(collection);
        holdList(list);
        m_items = &list.m_items;
    } else if (type == typeid(LinkedList)) {
        const auto& list = exactly<LinkedList>(collection);
        holdList(list);
        m_node = &list.m_sentinel;
    } else {
        m_iterator = collection.createConstIterator();
    }
    step();
}

void ElementCursor::stepIterator()
{
    m_atEnd = !m_iterator->hasNext();
    m_held = m_atEnd ? nullptr : m_iterator->next();
    m_element = m_held.get();
}

void ElementCursor::throwModified()
{
    throw Exception();
}

} // namespace orv::collections::quark
