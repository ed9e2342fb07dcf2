#pragma once

#include "orv/ComObject.h"
#include "orv/collections/quark/MapEntry.h"
#include "orv/quark/Implements.h"

namespace orv::collections::internal {
class EntryPool;
}

namespace orv::collections::quark {

/// An entry of a HashMap, made by the map.
///
/// Whoever holds one may go on using it after it was taken out of the map, or after the map is
/// gone; then setValue() changes this object only. Threads: as the map; the last count may be given
/// back by any.
class ORV_API HashMapEntry final : public ::orv::quark::ImplementsVirtual<ComObject, MapEntry> {
public:
    HashMapEntry(const HashMapEntry&) = delete;
    HashMapEntry& operator=(const HashMapEntry&) = delete;

    std::uint32_t Release() const override;

    /// 0, whatever `other` is.
    std::int32_t compareTo(const Object& other) const override;

    /// True, whatever `other` is.
    bool equals(const Object& other) const override;

    Reference<IORVUnknown> getKey() override;
    Reference<IORVUnknown> getValue() override;

    /// 0, and so is the hash of every map of such entries.
    std::uint32_t hashCode() const override;

    Reference<IORVUnknown> setValue(IORVUnknown* value) override;

private:
    friend class HashMap;
    friend class HashMapIterator;

    HashMapEntry(IORVUnknown* key, IORVUnknown* value, std::uint32_t hash);
    ~HashMapEntry() noexcept(false) override;

    Reference<IORVUnknown> m_key;
    Reference<IORVUnknown> m_value;
    const std::uint32_t m_hash;
    union {
        HashMapEntry* m_next = nullptr; ///< of its bucket, while it is in the map
        internal::EntryPool* m_home;    ///< where its place goes, once it has left it
    };
};

} // namespace orv::collections::quark
