#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Reference.h"

#include <cstdint>

/// \file
/// The iterators of the collections.
///
/// An iterator keeps its collection alive, which must therefore stand on the heap. It notices, in
/// the operations that say so, that the collection was modified behind its back, and throws an
/// Exception without text. Threads: one at a time, with the collection.

namespace orv::collections::quark {

/// Walks the elements of a collection once.
class ORV_API ConstIterator : public virtual IORVUnknown {
public:
    /// Whether next() has an element to give. Never notices a modification.
    virtual bool hasNext() = 0;

    /// The next element, which may be null. Throws Exception after a modification, and an
    /// exception of the collection's choice past the end.
    virtual Reference<IORVUnknown> next() = 0;

protected:
    ConstIterator() = default;
    ConstIterator(const ConstIterator&) = default;
    ConstIterator& operator=(const ConstIterator&) = default;
    ~ConstIterator() = default;
};

/// Walks a collection and removes from it.
class ORV_API Iterator : public virtual ConstIterator {
public:
    /// Removes the element last given. Throws Exception after a modification by others, and
    /// IllegalStateException where there is no such element or it was removed already.
    virtual void remove() = 0;

protected:
    ~Iterator() = default;
};

/// Walks a list in both directions. Stands between two elements.
class ORV_API ConstListIterator : public virtual ConstIterator {
public:
    /// Whether previous() has an element to give. Never notices a modification.
    virtual bool hasPrevious() = 0;

    /// The element before, moving back over it. Fails as next() does.
    virtual Reference<IORVUnknown> previous() = 0;

    /// The index of what next() would give.
    virtual std::int32_t nextIndex() = 0;

    /// The index of what previous() would give, -1 at the start.
    virtual std::int32_t previousIndex() = 0;

protected:
    ~ConstListIterator() = default;
};

/// Walks a list in both directions and changes it.
class ORV_API ListIterator : public Iterator, public ConstListIterator {
public:
    /// Inserts `element` before what next() would give, and moves behind it. Throws Exception
    /// after a modification by others.
    virtual void add(IORVUnknown* element) = 0;

    /// Replaces the element last given. Fails as remove() does.
    virtual void set(IORVUnknown* element) = 0;

protected:
    ~ListIterator() = default;
};

} // namespace orv::collections::quark
