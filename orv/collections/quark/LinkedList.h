#pragma once

#include "orv/collections/quark/AbstractList.h"
#include "orv/collections/quark/ListNode.h"

namespace orv::collections::internal {
class LinkedListCursor;
}

namespace orv::collections::quark {

/// A list on a ring of nodes: a queue, with add(element) and remove(0) in constant time.
///
/// An index is reached from the first node, in that many steps, and so is each element of an
/// iterator. Walk a long list by a range-based `for`, which takes one step an element. Nodes come
/// in blocks, serve again when they become free, and go when the list becomes empty, but for one.
///
/// An operation that runs out of memory throws OutOfMemoryException and changes nothing.
///
/// What counts as a modification: add(index, element), remove(), set() and clear(), once each.
/// Appending by add(element) does not, nor what fills a list through it, so that an open iterator
/// walks on to what was appended.
class ORV_API LinkedList : public AbstractList {
public:
    /// Empty; with the default comparator or `comparator`.
    LinkedList();
    explicit LinkedList(const IORVComparator* comparator);

    /// With the elements of `source`, appended one by one.
    explicit LinkedList(const Collection& source);
    LinkedList(const Collection& source, const IORVComparator* comparator);

    /// With the elements of `other` and its comparator.
    LinkedList(const LinkedList& other);

    /// Changes nothing, as the assignment of Object.
    LinkedList& operator=(const LinkedList& other) noexcept;
    ~LinkedList() noexcept(false) override;

    using AbstractList::add;
    using AbstractList::remove;

    /// Appends `element`; true.
    bool add(IORVUnknown* element) override;
    bool add(std::int32_t index, IORVUnknown* element) override;
    void clear() override;
    Reference<IORVUnknown> get(std::int32_t index) override;
    std::int32_t getSize() const override;
    Reference<IORVUnknown> remove(std::int32_t index) override;
    Reference<IORVUnknown> set(std::int32_t index, IORVUnknown* element) override;

private:
    friend class ElementCursor;
    friend class internal::LinkedListCursor;

    const ListNode* internalGet(std::int32_t index) const;
    ListNode* internalGet(std::int32_t index);

    void link(ListNode* before, IORVUnknown* element);
    IORVUnknown* unlink(ListNode* node);
    void releaseAll();

    ListNode m_sentinel{&m_sentinel, &m_sentinel, nullptr};
    std::int32_t m_size = 0;
    ListNodePool m_nodes;
};

} // namespace orv::collections::quark
