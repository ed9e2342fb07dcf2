#pragma once

#include "orv/Failure.h"
#include "orv/collections/Iterators.h"
#include "orv/collections/TypedCursor.h"
#include "orv/collections/quark/Collection.h"

#include <cstdint>
#include <iterator>

namespace orv::collections {

/// A collection of elements of the class `T`, an Object, over an untyped one.
///
///     Collection<String> names(makeReference<quark::ArrayList>().get());
///     names.add(makeReference<String>(u"Ada").get());
///     for (String* name : names) { ... }
///
/// Passes every operation on, and so does what the untyped collection does. An element that got
/// in as something else than a `T` throws CastFailedException where it is given out.
///
/// Ownership and threads: those of the untyped collection, of which a count is held.
template <class T>
class ORV_API Collection : public Object {
public:
    explicit Collection(quark::Collection* collection) : m_collection(collection) {}

    /// Those of the untyped collection, against the one within `other` where that is typed too.
    std::int32_t compareTo(const Object& other) const override
    {
        return m_collection->compareTo(untyped(other));
    }
    bool equals(const Object& other) const override { return m_collection->equals(untyped(other)); }
    std::uint32_t hashCode() const override { return m_collection->hashCode(); }

    /// Adds `element`; whether the collection has changed.
    virtual bool add(T* element) { return m_collection->add(toUnknown(element)); }
    /// Whether an element equals `element`, by the comparator of the untyped collection.
    virtual bool contains(const T* element) const
    {
        return m_collection->contains(toUnknown(element));
    }
    /// Removes the first element that equals `element`; whether there was one.
    virtual bool remove(const T* element) { return m_collection->remove(toUnknown(element)); }
    /// Adds the elements of `other` one by one; whether any changed this collection.
    virtual bool addAll(const Collection& other)
    {
        return m_collection->addAll(*other.m_collection);
    }
    /// Removes all elements.
    virtual void clear() { m_collection->clear(); }
    /// An iterator before the first element.
    virtual Reference<Iterator<T>> createIterator()
    {
        return makeReference<Iterator<T>>(m_collection->createIterator().get());
    }
    /// The same for reading.
    virtual Reference<ConstIterator<T>> createConstIterator() const
    {
        return makeReference<ConstIterator<T>>(m_collection->createConstIterator().get());
    }
    /// The number of elements.
    virtual std::int32_t getSize() const { return m_collection->getSize(); }
    /// Whether there are no elements.
    virtual bool isEmpty() const { return m_collection->isEmpty(); }
    /// Calls remove() of the untyped collection once for each element of `other`; whether any was
    /// removed.
    virtual bool removeAll(const Collection& other)
    {
        return m_collection->removeAll(*other.m_collection);
    }
    /// Removes each element that `other` does not contain; whether there was one. Ends at the first
    /// removal with an Exception, as quark::Collection::retainAll() does, when elements follow.
    virtual bool retainAll(const Collection& other)
    {
        return m_collection->retainAll(*other.m_collection);
    }

    /// The walk of a range-based `for`.
    TypedCursor<T> begin() const { return TypedCursor<T>(*m_collection); }
    static std::default_sentinel_t end() noexcept { return std::default_sentinel; }

    /// The untyped collection, borrowed.
    quark::Collection* getUntyped() const noexcept { return m_collection.get(); }

private:
    static const Object& untyped(const Object& other)
    {
        const auto* const typed = dynamic_cast<const Collection*>(&other);
        if (typed == nullptr) return other;
        const auto* const object = dynamic_cast<const Object*>(typed->m_collection.get());
        if (object == nullptr) throwCastFailed();
        return *object;
    }

    Reference<quark::Collection> m_collection;
};

extern template class Collection<Integer32>;
extern template class Collection<Object>;
extern template class Collection<String>;

} // namespace orv::collections
