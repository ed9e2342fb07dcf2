#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Reference.h"
#include "orv/collections/ReferenceRange.h"
#include "orv/collections/quark/ElementCursor.h"
#include "orv/collections/quark/Iterators.h"

#include <cstdint>
#include <iterator>

namespace orv {
class Object;
}

namespace orv::collections::quark {

/// A number of elements.
///
/// Elements are held by their counts and may be null where the collection's comparator accepts
/// null. Two elements are equal when the comparator says 0, with the stored one first; what the
/// comparator fails with is thrown as ResultException.
///
///     Reference<Collection> names = makeReference<ArrayList>();
///     names->add(toUnknown(name.get()));
///     for (IORVUnknown* element : *names) { ... }
///
/// Ownership: collections stand on the heap; iterators and views keep theirs alive. Threads: none
/// of the collections locks; one thread at a time, or any number that only read.
class ORV_API Collection : public virtual IORVUnknown {
public:
    /// Adds `element`; whether the collection has changed. Throws UnsupportedOperationException
    /// where the collection takes none.
    virtual bool add(IORVUnknown* element) = 0;

    /// Adds the elements of `other` one by one; whether any changed this collection.
    virtual bool addAll(const Collection& other) = 0;

    /// Removes all elements.
    virtual void clear() = 0;

    /// The order against `other`. Throws CastFailedException for an object of another kind.
    virtual std::int32_t compareTo(const Object& other) const = 0;

    /// Whether an element equals `element`.
    virtual bool contains(const IORVUnknown* element) const = 0;

    /// Whether every element of `other` is contained, as is the case when there is none.
    virtual bool containsAll(const Collection& other) const = 0;

    /// An iterator before the first element.
    virtual Reference<Iterator> createIterator() = 0;

    /// The same for reading.
    virtual Reference<ConstIterator> createConstIterator() const = 0;

    /// Whether `other` equals this collection.
    virtual bool equals(const Object& other) const = 0;

    /// The number of elements.
    virtual std::int32_t getSize() const = 0;

    /// A hash that equal collections share.
    virtual std::uint32_t hashCode() const = 0;

    /// Removes the first element that equals `element`; whether there was one.
    virtual bool remove(const IORVUnknown* element) = 0;

    /// Calls remove() once for each element of `other`; whether any was removed. A list that holds
    /// a value three times keeps two of them where `other` has it once.
    virtual bool removeAll(const Collection& other) = 0;

    /// Removes each element that `other` does not contain; whether there was one.
    ///
    /// The walk does not survive a removal: when elements follow the one removed, it ends there
    /// with an Exception, and that one removal stays. Remove through an Iterator to keep more.
    virtual bool retainAll(const Collection& other) = 0;

    /// Whether there are no elements.
    bool isEmpty() const { return getSize() == 0; }

    /// The walk of a range-based `for`. For a collection made on the spot, walk its Reference; see
    /// ReferenceRange.h.
    ElementCursor begin() const { return ElementCursor(*this); }
    static std::default_sentinel_t end() noexcept { return std::default_sentinel; }

protected:
    Collection() = default;
    Collection(const Collection&) = default;
    Collection& operator=(const Collection&) = default;
    ~Collection() = default;
};

} // namespace orv::collections::quark
