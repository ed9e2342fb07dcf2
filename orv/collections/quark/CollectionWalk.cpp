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
ElementCursor::Start ElementCursor::startOn(const ConcreteList& list)
{
    Start start;
    start.size = &list.m_size;
    start.modCount = &list.m_modCount;
    if (list.GetRefCount() == 0) return start;
    list.AddRef();
    start.owned = list.GetUnknown();
    return start;
}

ElementCursor::Start ElementCursor::startOf(const Collection& collection)
{
    const std::type_info& type = typeid(collection);
    if (type == typeid(ArrayList)) {
        const auto& list = exactly<ArrayList>(collection);
        Start start = startOn(list);
        start.items = &list.m_items;
        return start;
    }
    if (type == typeid(LinkedList)) {
        const auto& list = exactly<LinkedList>(collection);
        Start start = startOn(list);
        start.sentinel = &list.m_sentinel;
        return start;
    }
    Start start;
    start.iterator = collection.createConstIterator().detach();
    start.owned = start.iterator;
    return start;
}

IORVUnknown* ElementCursor::nextOf(ConstIterator* iterator)
{
    return iterator->next().detach();
}

void ElementCursor::release(const IORVUnknown* object)
{
    object->Release();
}

void ElementCursor::throwModified()
{
    throw Exception();
}

} // namespace orv::collections::quark
