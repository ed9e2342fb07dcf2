#pragma once

#include "orv/collections/quark/AbstractList.h"

namespace orv::collections::quark {

/// A list on one growing array: any index in constant time.
///
///     auto list = makeReference<ArrayList>();
///     list->add(toUnknown(first.get()));
///     list->add(0, toUnknown(second.get()));
///
/// The array grows by half of its capacity, at least to what is needed, beginning with 1 at the
/// first element, and never shrinks. An operation that runs out of memory throws
/// OutOfMemoryException and changes nothing.
///
/// What counts as a modification: add(index, element), remove() and set() once each; clear() once
/// for each element and once more. Appending by add(element) does not, nor what fills a list
/// through it, so that an open iterator walks on to what was appended.
class ORV_API ArrayList : public AbstractList {
public:
    /// Empty, without storage; with the default comparator or `comparator`.
    ArrayList();
    explicit ArrayList(const IORVComparator* comparator);

    /// With the elements of `source`, appended one by one.
    explicit ArrayList(const Collection& source);
    ArrayList(const Collection& source, const IORVComparator* comparator);

    /// With the elements of `other` and its comparator.
    ArrayList(const ArrayList& other);

    /// Changes nothing, as the assignment of Object.
    ArrayList& operator=(const ArrayList& other) noexcept;
    ~ArrayList() noexcept(false) override;

    using AbstractList::add;
    using AbstractList::remove;

    /// Appends `element`; true.
    bool add(IORVUnknown* element) override;
    bool add(std::int32_t index, IORVUnknown* element) override;

    /// Calls remove(index) from the last element to the first. Keeps the storage.
    void clear() override;
    Reference<IORVUnknown> get(std::int32_t index) override;
    std::int32_t getSize() const override;
    Reference<IORVUnknown> remove(std::int32_t index) override;
    Reference<IORVUnknown> set(std::int32_t index, IORVUnknown* element) override;

private:
    friend class ElementCursor;

    void grow();
    void insert(std::int32_t index, IORVUnknown* element);

    IORVUnknown** m_items = nullptr; ///< m_size elements with a count each, or null
    std::int32_t m_size = 0;
    std::int32_t m_capacity = 0;
};

} // namespace orv::collections::quark
