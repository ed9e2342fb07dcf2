#pragma once

#include "orv/collections/quark/AbstractSet.h"

namespace orv::collections::quark {

class HashMap;

/// A set in a HashMap of 101 buckets, which grow at a load of 0.75.
///
///     auto seen = makeReference<HashSet>();
///     if (!seen->add(toUnknown(name.get()))) return;    // met before
///
/// Elements equal and hash by the comparator; the walk is that of HashMap. Ownership: holds a count
/// on each element; a set that anything iterates stands on the heap. Errors and threads: as
/// HashMap.
class ORV_API HashSet : public AbstractSet {
public:
    /// With the default comparator.
    HashSet();
    /// With `comparator`, as AbstractCollection takes it.
    explicit HashSet(const IORVComparator* comparator);
    /// With the elements of `source`.
    explicit HashSet(const Collection& source);
    HashSet(const Collection& source, const IORVComparator* comparator);
    /// With comparator, number of buckets and elements of `source`.
    HashSet(const HashSet& source);
    HashSet& operator=(const HashSet& other) = delete;
    ~HashSet() noexcept(false) override;

    /// Adds `element` where no equal one is there, which otherwise stays; whether it was added.
    bool add(IORVUnknown* element) override;

    /// Drops all elements as HashMap::clear() does: getSize() keeps its answer.
    void clear() override;

    bool contains(const IORVUnknown* element) const override;
    std::int32_t getSize() const override;
    bool remove(const IORVUnknown* element) override;

    /// 0: every set's.
    std::uint32_t hashCode() const override;

    /// 0 where `other` holds the same elements. Throws CastFailedException where it is no HashSet.
    std::int32_t compareTo(const Object& other) const override;

    /// Whether compareTo() gives 0. Throws CastFailedException where `other` is no HashSet.
    bool equals(const Object& other) const override;

    Reference<Iterator> createIterator() override;
    Reference<ConstIterator> createConstIterator() const override;

private:
    Reference<HashMap> m_map;
};

} // namespace orv::collections::quark
