#pragma once

#include "orv/ComObject.h"
#include "orv/collections/quark/Iterators.h"
#include "orv/quark/Implements.h"

#include <cstdint>

namespace orv::collections::quark {

class HashMap;
class HashMapEntry;

/// Walks a HashMap.
///
/// A new key and a removal by others are modifications, a new value is none. HashMap::clear() is
/// none either, but the entries it dropped do not come any more.
class ORV_API HashMapIterator : public ::orv::quark::ImplementsVirtual<ComObject, Iterator> {
public:
    // What next() gives.
    static constexpr std::int32_t KEYS = 0;
    static constexpr std::int32_t VALUES = 1;
    static constexpr std::int32_t ENTRIES = 2;

    /// Stands before the first entry of `map`, of which a count is taken; `kind` is one of the
    /// constants.
    HashMapIterator(HashMap* map, std::int32_t kind);
    HashMapIterator(const HashMapIterator&) = delete;
    HashMapIterator& operator=(const HashMapIterator&) = delete;
    ~HashMapIterator() noexcept(false) override;

    bool hasNext() override;

    /// Throws Exception after a modification and past the end.
    Reference<IORVUnknown> next() override;

    /// Also throws IllegalStateException where HashMap::clear() dropped the entry.
    void remove() override;

private:
    void checkModification() const;
    void forgetCleared() noexcept;
    void moveOn() noexcept;
    void fetchEntry() noexcept;
    void fetchObjects() noexcept;

    Reference<HashMap> m_map;
    std::int32_t m_expectedModCount;
    std::int32_t m_kind;
    std::int32_t m_index;
    std::int32_t m_entriesAhead; ///< the bucket whose entry was fetched last
    std::int32_t m_objectsAhead; ///< the bucket whose key and value were
    std::int32_t m_tables;       ///< of the map, when the entries below were seen

    // They take no counts: while neither modification nor clear() is noticed, they are in the map.
    HashMapEntry* m_nextEntry = nullptr;
    HashMapEntry* m_lastReturned = nullptr;
};

} // namespace orv::collections::quark
