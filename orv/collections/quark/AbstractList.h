#pragma once

#include "orv/collections/quark/AbstractCollection.h"
#include "orv/collections/quark/List.h"

namespace orv::collections::quark {

/// A list out of its access by index: what remains to be written is getSize(), get(), set(),
/// add(index, element) and remove(index).
///
/// Lists are equal when their elements are, one by one, and are ordered as words are.
class ORV_API AbstractList : public ::orv::quark::ImplementsVirtual<AbstractCollection, List> {
public:
    ~AbstractList() noexcept(false) override;

    bool add(std::int32_t index, IORVUnknown* element) override = 0;
    Reference<IORVUnknown> remove(std::int32_t index) override = 0;

    /// Appends through a list iterator, and so is a modification; true.
    bool add(IORVUnknown* element) override;

    using AbstractCollection::addAll;
    /// Where `other` is this list, ends with an Exception behind the first element.
    bool addAll(std::int32_t index, const Collection& other) override;
    bool remove(const IORVUnknown* element) override;
    std::int32_t indexOf(const IORVUnknown* element) const override;
    std::int32_t lastIndexOf(const IORVUnknown* element) const override;

    /// As words are ordered, with this list's comparator. Throws CastFailedException where `other`
    /// is no list.
    std::int32_t compareTo(const Object& other) const override;
    bool equals(const Object& other) const override;

    /// 1, then for each element times 38 plus its hash, wrapping.
    std::uint32_t hashCode() const override;

    Reference<Iterator> createIterator() override;
    Reference<ConstIterator> createConstIterator() const override;
    Reference<ListIterator> createListIterator(std::int32_t index) override;
    Reference<ConstListIterator> createConstListIterator(std::int32_t index) const override;
    Reference<const List> createSubList(std::int32_t from, std::int32_t to) const override;
    Reference<List> createSubList(std::int32_t from, std::int32_t to) override;

protected:
    /// As AbstractCollection's.
    AbstractList();
    explicit AbstractList(const IORVComparator* comparator);
    AbstractList(const AbstractList& other);
    AbstractList& operator=(const AbstractList& other) noexcept;

    /// The order of the elements against those of `other`; a list that ends first is the smaller.
    std::int32_t compareToList(const List& other) const;

    /// Counts the modifications, by which iterators and sub-lists notice them. Each operation of a
    /// concrete list that is a modification adds exactly 1, but where it says otherwise.
    std::int32_t m_modCount = 0;

private:
    friend class AbstractListIterator;
    friend class AbstractListSubList;
    friend class ElementCursor;
};

} // namespace orv::collections::quark
