#pragma once

#include "orv/collections/quark/AbstractSet.h"

namespace orv::collections::quark {

class HashMap;

/// The live view of a HashMap's entries, each a HashMapEntry.
class ORV_API HashMapEntrySet : public AbstractSet {
public:
    /// A view on `map`, of which a count is taken.
    explicit HashMapEntrySet(const HashMap* map);
    HashMapEntrySet(const HashMapEntrySet&) = delete;
    HashMapEntrySet& operator=(const HashMapEntrySet&) = delete;
    ~HashMapEntrySet() noexcept(false) override;

    /// Whether the map has an entry with the key and the value of `element`. Throws
    /// CastFailedException where that is no MapEntry.
    bool contains(const IORVUnknown* element) const override;
    std::int32_t getSize() const override;
    Reference<Iterator> createIterator() override;
    Reference<ConstIterator> createConstIterator() const override;

private:
    Reference<HashMap> m_map;
};

} // namespace orv::collections::quark
