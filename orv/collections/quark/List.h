#pragma once

#include "orv/collections/quark/Collection.h"

namespace orv::collections::quark {

/// A collection in an order of its own, by index from 0.
///
/// An index that is out of its bounds throws RangeErrorException and changes nothing.
class ORV_API List : public virtual Collection {
public:
    using Collection::add;
    using Collection::addAll;
    using Collection::remove;

    /// Inserts `element` before `index`, 0 to the size; whether the list has changed.
    virtual bool add(std::int32_t index, IORVUnknown* element) = 0;

    /// Inserts the elements of `other` before `index`, 0 to the size; whether there was one.
    virtual bool addAll(std::int32_t index, const Collection& other) = 0;

    /// Removes the element at `index` and returns it.
    virtual Reference<IORVUnknown> remove(std::int32_t index) = 0;

    /// An iterator before the element at `index`, 0 to the size.
    virtual Reference<ListIterator> createListIterator(std::int32_t index) = 0;

    /// The same for reading.
    virtual Reference<ConstListIterator> createConstListIterator(std::int32_t index) const = 0;

    /// A live view on the elements from `from` to before `to`. Refuses every access, with an
    /// Exception, once the list was modified other than through the view.
    virtual Reference<const List> createSubList(std::int32_t from, std::int32_t to) const = 0;
    virtual Reference<List> createSubList(std::int32_t from, std::int32_t to) = 0;

    /// The element at `index`.
    virtual Reference<IORVUnknown> get(std::int32_t index) = 0;

    /// The index of the first element that equals `element`, -1 without one.
    virtual std::int32_t indexOf(const IORVUnknown* element) const = 0;

    /// The index of the last element that equals `element`, -1 without one.
    virtual std::int32_t lastIndexOf(const IORVUnknown* element) const = 0;

    /// Replaces the element at `index` and returns the one before.
    virtual Reference<IORVUnknown> set(std::int32_t index, IORVUnknown* element) = 0;

protected:
    ~List() = default;
};

} // namespace orv::collections::quark
