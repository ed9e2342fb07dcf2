#pragma once

#include "orv/collections/Collection.h"
#include "orv/collections/quark/List.h"

#include <cstdint>

namespace orv::collections {

/// A list of elements of the class `T`, over an untyped one.
template <class T>
class ORV_API List : public Collection<T> {
public:
    explicit List(quark::List* list) : Collection<T>(list), m_list(list) {}

    using Collection<T>::add;
    using Collection<T>::addAll;
    using Collection<T>::remove;

    virtual bool add(std::int32_t index, T* element)
    {
        return m_list->add(index, toUnknown(element));
    }
    virtual bool addAll(std::int32_t index, const Collection<T>& other)
    {
        return m_list->addAll(index, *other.getUntyped());
    }
    virtual Reference<T> remove(std::int32_t index) { return typed(m_list->remove(index)); }
    virtual Reference<ListIterator<T>> createListIterator(std::int32_t index)
    {
        return makeReference<ListIterator<T>>(m_list->createListIterator(index).get());
    }
    virtual Reference<ConstListIterator<T>> createConstListIterator(std::int32_t index) const
    {
        return makeReference<ConstListIterator<T>>(m_list->createConstListIterator(index).get());
    }
    virtual Reference<const List> createSubList(std::int32_t from, std::int32_t to) const
    {
        return makeReference<const List>(m_list->createSubList(from, to).get());
    }
    virtual Reference<List> createSubList(std::int32_t from, std::int32_t to)
    {
        return makeReference<List>(m_list->createSubList(from, to).get());
    }
    virtual Reference<T> get(std::int32_t index) { return typed(m_list->get(index)); }
    virtual std::int32_t indexOf(const T* element) const
    {
        return m_list->indexOf(toUnknown(element));
    }
    virtual std::int32_t lastIndexOf(const T* element) const
    {
        return m_list->lastIndexOf(toUnknown(element));
    }
    virtual Reference<T> set(std::int32_t index, T* element)
    {
        return typed(m_list->set(index, toUnknown(element)));
    }

private:
    static Reference<T> typed(const Reference<IORVUnknown>& element)
    {
        return elementCast<T>(element.get());
    }

    Reference<quark::List> m_list;
};

extern template class List<Object>;
extern template class List<String>;

} // namespace orv::collections
