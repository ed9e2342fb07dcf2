#pragma once

#include "orv/collections/Collection.h"
#include "orv/collections/quark/List.h"

#include <cstdint>

namespace orv::collections {

/// A list of elements of the class `T`, over an untyped one. An index that is out of its bounds
/// throws RangeErrorException and changes nothing.
template <class T>
class ORV_API List : public Collection<T> {
public:
    explicit List(quark::List* list) : Collection<T>(list), m_list(list) {}

    using Collection<T>::add;
    using Collection<T>::addAll;
    using Collection<T>::remove;

    /// Inserts `element` before `index`, 0 to the size; whether the list has changed.
    virtual bool add(std::int32_t index, T* element)
    {
        return m_list->add(index, toUnknown(element));
    }
    /// Inserts the elements of `other` before `index`, 0 to the size; whether there was one.
    virtual bool addAll(std::int32_t index, const Collection<T>& other)
    {
        return m_list->addAll(index, *other.getUntyped());
    }
    /// Removes the element at `index` and returns it.
    virtual Reference<T> remove(std::int32_t index) { return typed(m_list->remove(index)); }
    /// An iterator before the element at `index`, 0 to the size.
    virtual Reference<ListIterator<T>> createListIterator(std::int32_t index)
    {
        return makeReference<ListIterator<T>>(m_list->createListIterator(index).get());
    }
    /// The same for reading.
    virtual Reference<ConstListIterator<T>> createConstListIterator(std::int32_t index) const
    {
        return makeReference<ConstListIterator<T>>(m_list->createConstListIterator(index).get());
    }
    /// A live view on the elements from `from` to before `to`. Refuses every access, with an
    /// Exception, once the list was modified other than through the view.
    virtual Reference<const List> createSubList(std::int32_t from, std::int32_t to) const
    {
        return makeReference<const List>(m_list->createSubList(from, to).get());
    }
    /// The same for a list that may be changed.
    virtual Reference<List> createSubList(std::int32_t from, std::int32_t to)
    {
        return makeReference<List>(m_list->createSubList(from, to).get());
    }
    /// The element at `index`.
    virtual Reference<T> get(std::int32_t index) { return typed(m_list->get(index)); }
    /// The index of the first element that equals `element`, -1 without one.
    virtual std::int32_t indexOf(const T* element) const
    {
        return m_list->indexOf(toUnknown(element));
    }
    /// The index of the last element that equals `element`, -1 without one.
    virtual std::int32_t lastIndexOf(const T* element) const
    {
        return m_list->lastIndexOf(toUnknown(element));
    }
    /// Replaces the element at `index` and returns the one before.
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
