#include "orv/collections/quark/HashMapIterator.h"

#include "orv/Exceptions.h"
#include "orv/collections/quark/HashMap.h"

#include <utility>

namespace orv::collections::quark {

namespace {

// A walk jumps through memory, and counts on what it gives out make the processor wait for each
// jump before the next: so what comes is fetched ahead, in maps that do not fit its caches anyway.
constexpr int DISTANCE = 12; ///< buckets
constexpr std::int32_t WORTH_FETCHING = 1000;

} // namespace

HashMapIterator::HashMapIterator(HashMap* map, std::int32_t kind)
    : m_map(map), m_expectedModCount(map->m_modCount), m_kind(kind),
      m_index(map->m_buckets.capacity()), m_entriesAhead(m_index), m_objectsAhead(m_index),
      m_tables(map->m_tables)
{
    if (map->m_size < WORTH_FETCHING) m_entriesAhead = m_objectsAhead = 0;
    for (int i = 0; i < DISTANCE; ++i) fetchEntry();
    for (int i = 0; i < DISTANCE / 2; ++i) fetchObjects();
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
    fetchEntry();
    fetchObjects();
}

/// Lets the next entry come that has not been asked for.
void HashMapIterator::fetchEntry() noexcept
{
    if (m_entriesAhead <= 0) return;
    m_entriesAhead = m_map->m_buckets.usedBefore(m_entriesAhead);
    if (m_entriesAhead >= 0) __builtin_prefetch(m_map->m_buckets.head(m_entriesAhead), 1);
}

/// The same for the key and the value of an entry, which is expected to be here.
void HashMapIterator::fetchObjects() noexcept
{
    if (m_objectsAhead <= 0) return;
    m_objectsAhead = m_map->m_buckets.usedBefore(m_objectsAhead);
    if (m_objectsAhead < 0) return;
    const HashMapEntry* const entry = m_map->m_buckets.head(m_objectsAhead);
    if (m_kind != VALUES) __builtin_prefetch(entry->m_key.get(), 1);
    if (m_kind != KEYS) __builtin_prefetch(entry->m_value.get(), 1);
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
