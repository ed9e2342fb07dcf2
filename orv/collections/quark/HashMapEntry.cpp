#include "orv/collections/quark/HashMapEntry.h"

#include "orv/collections/internal/EntryPool.h"
#include <utility>

namespace orv::collections::quark {

static_assert(sizeof(HashMapEntry) <= internal::EntryPool::PLACE);

namespace {

/// Gives a place back when what stood there is gone, even if it threw.
struct Vacated {
    internal::EntryPool* home;
    void* place;

    ~Vacated() { home->giveBack(place); }
};

} // namespace

HashMapEntry::HashMapEntry(IORVUnknown* key, IORVUnknown* value, std::uint32_t hash)
    : m_key(key), m_value(value), m_hash(hash)
{
    InternalTakeFirst();
}

HashMapEntry::~HashMapEntry() noexcept(false) = default;

std::uint32_t HashMapEntry::Release() const
{
    const std::uint32_t count = InternalRelease();
    if (count != 0) return count;

    // While it is in the map the map's count remains, so this one has left it.
    auto* const self = const_cast<HashMapEntry*>(this);
    const Vacated vacated{m_home, self};
    self->~HashMapEntry();
    return 0;
}

std::int32_t HashMapEntry::compareTo(const Object&) const
{
    return 0;
}

bool HashMapEntry::equals(const Object&) const
{
    return true;
}

Reference<IORVUnknown> HashMapEntry::getKey()
{
    return m_key;
}

Reference<IORVUnknown> HashMapEntry::getValue()
{
    return m_value;
}

std::uint32_t HashMapEntry::hashCode() const
{
    return 0;
}

Reference<IORVUnknown> HashMapEntry::setValue(IORVUnknown* value)
{
    return std::exchange(m_value, Reference<IORVUnknown>(value));
}

} // namespace orv::collections::quark
