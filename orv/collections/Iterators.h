#pragma once

#include "orv/Integers.h"
#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/ElementCast.h"
#include "orv/collections/Fwd.h"
#include "orv/collections/quark/Iterators.h"

#include <cstdint>

/// \file
/// The iterators of the typed collections: each passes its operations on to an untyped one, and
/// throws CastFailedException for an element that is no `T`.

namespace orv::collections {

/// Walks the elements of a collection once.
template <class T>
class ORV_API ConstIterator : public Object {
public:
    /// Goes on where `iterator` stands, of which a count is taken.
    explicit ConstIterator(quark::ConstIterator* iterator) : m_iterator(iterator) {}

    /// Whether next() has an element to give.
    bool hasNext() const { return m_iterator->hasNext(); }

    /// The next element, which may be null.
    Reference<T> next()
    {
        const Reference<IORVUnknown> element = m_iterator->next();
        return elementCast<T>(element.get());
    }

private:
    Reference<quark::ConstIterator> m_iterator;
};

/// Walks a collection and removes from it.
template <class T>
class ORV_API Iterator : public ConstIterator<T> {
public:
    explicit Iterator(quark::Iterator* iterator) : ConstIterator<T>(iterator), m_remover(iterator)
    {
    }

    /// Removes the element last given.
    void remove() { m_remover->remove(); }

private:
    Reference<quark::Iterator> m_remover;
};

/// Adds the way back to `Base`, ConstIterator or Iterator, over the untyped `Steps`.
template <class T, class Base, class Steps>
class ORV_API ListSteps : public Base {
public:
    explicit ListSteps(Steps* iterator) : Base(iterator), m_steps(iterator) {}

    /// Whether previous() has an element to give.
    bool hasPrevious() const { return m_steps->hasPrevious(); }

    /// The element before, moving back over it; may be null.
    Reference<T> previous()
    {
        const Reference<IORVUnknown> element = m_steps->previous();
        return elementCast<T>(element.get());
    }

    /// The index of what next() would give.
    std::int32_t nextIndex() const { return m_steps->nextIndex(); }

    /// The index of what previous() would give, -1 at the start.
    std::int32_t previousIndex() const { return m_steps->previousIndex(); }

protected:
    /// The untyped iterator, of which a count is held.
    Reference<Steps> m_steps;
};

/// Walks a list in both directions.
template <class T>
class ORV_API ConstListIterator : public ListSteps<T, ConstIterator<T>, quark::ConstListIterator> {
public:
    using ListSteps<T, ConstIterator<T>, quark::ConstListIterator>::ListSteps;
};

/// Walks a list in both directions and changes it.
template <class T>
class ORV_API ListIterator : public ListSteps<T, Iterator<T>, quark::ListIterator> {
public:
    using ListSteps<T, Iterator<T>, quark::ListIterator>::ListSteps;

    /// Inserts `element` before what next() would give, and moves behind it.
    void add(T* element) { this->m_steps->add(toUnknown(element)); }

    /// Replaces the element last given.
    void set(T* element) { this->m_steps->set(toUnknown(element)); }
};

extern template class ConstIterator<Integer32>;
extern template class ConstIterator<Object>;
extern template class ConstIterator<String>;
extern template class Iterator<Integer32>;
extern template class Iterator<Object>;
extern template class Iterator<String>;
extern template class ConstListIterator<Object>;
extern template class ConstListIterator<String>;
extern template class ListIterator<Object>;
extern template class ListIterator<String>;

} // namespace orv::collections
