#pragma once

#include "orv/ComObject.h"
#include "orv/collections/quark/AbstractList.h"
#include "orv/quark/Implements.h"

namespace orv::collections::quark {

/// Walks any list by index.
///
/// Past the end, next() fails as the list's get() does, with RangeErrorException, and so does
/// previous() before the start. A failed operation moves and changes nothing. The iterator's own
/// changes are no modification to it, as long as the list counts exactly 1 for each.
class ORV_API AbstractListIterator
    : public ::orv::quark::ImplementsVirtual<ComObject, ListIterator> {
public:
    /// Before the element at `index` of `list`, of which a count is taken; not checked.
    AbstractListIterator(const AbstractList* list, std::int32_t index);
    AbstractListIterator(const AbstractListIterator&) = delete;
    AbstractListIterator& operator=(const AbstractListIterator&) = delete;
    ~AbstractListIterator() noexcept(false) override;

    bool hasNext() override;
    Reference<IORVUnknown> next() override;
    void remove() override;
    bool hasPrevious() override;
    Reference<IORVUnknown> previous() override;
    std::int32_t nextIndex() override;
    std::int32_t previousIndex() override;
    void add(IORVUnknown* element) override;
    void set(IORVUnknown* element) override;

private:
    void checkModified() const;
    void checkGiven() const;

    Reference<AbstractList> m_list;
    std::int32_t m_expectedModCount;
    std::int32_t m_cursor;       ///< index of what next() gives
    std::int32_t m_lastRet = -1; ///< index given last, -1 when there is none
};

} // namespace orv::collections::quark
