#include "orv/collections/IntegerHashMap.h"

#include "orv/Integers.h"
#include "orv/collections/Set.h"
#include "orv/collections/internal/TableGrowth.h"
#include "orv/collections/quark/HashSet.h"

#include <algorithm>

namespace orv::collections {

using internal::IntegerKey;

IntegerHashMap::IntegerHashMap(std::int32_t capacity, float loadFactor)
    : m_loadFactor(loadFactor), m_table(std::max(capacity, 1))
{
    m_threshold = internal::thresholdOf(m_table.capacity(), loadFactor);
}

IntegerHashMap::~IntegerHashMap() noexcept(false) = default;

std::int32_t IntegerHashMap::calcCapacity(std::int32_t size)
{
    return internal::capacityFor(size);
}

void IntegerHashMap::rehash()
{
    m_table.rehash(internal::grownCapacity(m_table.capacity()));
    m_threshold = internal::thresholdOf(m_table.capacity(), m_loadFactor);
}

std::uint32_t IntegerHashMap::getKeyHashCode(std::int32_t key) const
{
    return static_cast<std::uint32_t>(key);
}

bool IntegerHashMap::keysEqual(std::int32_t a, std::int32_t b) const
{
    return a == b;
}

void IntegerHashMap::clear()
{
    m_table.clear();
    m_threshold = internal::thresholdOf(m_table.capacity(), m_loadFactor);
}

Reference<Object> IntegerHashMap::get(std::int32_t key)
{
    const auto* const entry = m_table.find(IntegerKey(), getKeyHashCode(key));
    return entry != nullptr ? Reference<Object>(entry->value) : nullptr;
}

std::int32_t IntegerHashMap::getSize() const
{
    return m_size;
}

bool IntegerHashMap::isEmpty() const
{
    return getSize() == 0;
}

Reference<Object> IntegerHashMap::put(std::int32_t key, Object* value)
{
    const std::uint32_t hash = getKeyHashCode(key);
    if (auto* const entry = m_table.find(IntegerKey(), hash)) {
        return m_table.exchange(*entry, value);
    }
    m_table.reserve(IntegerKey());
    if (m_size >= m_threshold) rehash();
    m_table.insert(IntegerKey(), hash, value);
    ++m_size;
    return nullptr;
}

Reference<Object> IntegerHashMap::remove(std::int32_t key)
{
    auto* const entry = m_table.find(IntegerKey(), getKeyHashCode(key));
    if (entry == nullptr) return nullptr;
    --m_size;
    return m_table.take(*entry);
}

Reference<const Set<Integer32>> IntegerHashMap::createKeySet() const
{
    const auto keys = makeReference<Set<Integer32>>(makeReference<quark::HashSet>().get());
    m_table.forEach([&](const internal::PackedEntry& entry) {
        keys->add(makeReference<Integer32>(static_cast<std::int32_t>(entry.hash)).get());
    });
    return keys;
}

} // namespace orv::collections
