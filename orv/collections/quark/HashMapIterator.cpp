#include "orv/collections/quark/HashMapIterator.h"

#include "orv/Exceptions.h"
#include "orv/collections/quark/HashMap.h"

#include <utility>

namespace orv::collections::quark {

HashMapIterator::HashMapIterator(HashMap* map, std::int32_t kind)
    : m_map(map), m_expectedModCount(map->m_modCount), m_kind(kind),
      m_index(map->m_buckets.capacity()), m_tables(map->m_tables)
{
}

HashMapIterator::~HashMapIterator() noexcept(false) = default;

void HashMapIterator::checkModification() const
{
    if (m_expectedModCount != m_map->m_modCount) throw Exception();
}

void HashMapIterator::forgetCleared() noexcept
{
    if (m_tables == m_map->m_tables) return;
    m_tables = m_map->m_tables;
    m_nextEntry = nullptr;
    m_lastReturned = nullptr;
}

void HashMapIterator::moveOn() noexcept
{
    forgetCleared();
    if (m_nextEntry != nullptr || m_index <= 0) return;
    m_index = m_map->m_buckets.usedBefore(m_index);
    if (m_index >= 0) m_nextEntry = m_map->m_buckets.head(m_index);
}

bool HashMapIterator::hasNext()
{
    moveOn();
    return m_nextEntry != nullptr;
}

Reference<IORVUnknown> HashMapIterator::next()
{
    checkModification();
    moveOn();
    if (m_nextEntry == nullptr) throw Exception();
    m_lastReturned = std::exchange(m_nextEntry, m_nextEntry->m_next);
    if (m_kind == KEYS) return m_lastReturned->m_key;
    if (m_kind == VALUES) return m_lastReturned->m_value;
    return m_lastReturned->GetUnknown();
}

void HashMapIterator::remove()
{
    checkModification();
    forgetCleared();
    if (m_lastReturned == nullptr) throw IllegalStateException();
    HashMapEntry* const entry = std::exchange(m_lastReturned, nullptr);
    const std::int32_t bucket = m_map->m_buckets.bucketOf(entry->m_hash);
    ++m_expectedModCount;
    m_map->removeEntry(entry, m_map->previousOf(entry, bucket), bucket);
}

} // namespace orv::collections::quark
