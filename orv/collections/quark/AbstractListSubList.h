#pragma once

#include "orv/collections/quark/AbstractList.h"

namespace orv::collections::quark {

/// A live view on a part of a list, which it keeps alive.
///
/// Changes through the view change the list. Once the list was modified in another way, get(),
/// set(), add(index, element) and remove(index) throw Exception, after the test of the index;
/// getSize() goes on giving the old size, and add(element) works while the list is long enough.
///
/// createIterator() gives an iterator that does not survive its own changes: after one remove(),
/// its next operation throws Exception, and so clear() of two or more elements removes one and
/// throws. createListIterator() gives one that does; its next() and previous() throw Exception past
/// the ends, and its set() counts as a modification behind the view's back, though not behind its
/// own: use the view's set().
class ORV_API AbstractListSubList : public AbstractList {
public:
    /// The elements of `parent` from `from` to before `to`; not checked. Takes the comparator of
    /// `parent` and a count of it.
    AbstractListSubList(const AbstractList* parent, std::int32_t from, std::int32_t to);
    AbstractListSubList(const AbstractListSubList&) = delete;
    AbstractListSubList& operator=(const AbstractListSubList&) = delete;
    ~AbstractListSubList() noexcept(false) override;

    using AbstractList::add;
    using AbstractList::remove;

    bool add(std::int32_t index, IORVUnknown* element) override;
    Reference<ListIterator> createListIterator(std::int32_t index) override;
    Reference<IORVUnknown> get(std::int32_t index) override;
    std::int32_t getSize() const override;
    Reference<IORVUnknown> remove(std::int32_t index) override;
    Reference<IORVUnknown> set(std::int32_t index, IORVUnknown* element) override;

private:
    class SubListIterator;

    void checkModified() const;
    void resized(std::int32_t difference);

    Reference<AbstractList> m_parent;
    std::int32_t m_expectedModCount;
    std::int32_t m_offset;
    std::int32_t m_size;
};

} // namespace orv::collections::quark
