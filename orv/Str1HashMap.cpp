#include "orv/Str1HashMap.h"

#include "orv/Str1Family.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace orv {

namespace {

/// Room for a normal form that is only looked up: without the heap for all but very long keys.
using LookupKey = Str1Fixed<128>;

std::int32_t thresholdOf(std::int32_t capacity, float loadFactor)
{
    const float entries = static_cast<float>(capacity) * loadFactor;
    return entries < 2147483648.0F ? static_cast<std::int32_t>(entries)
                                   : std::numeric_limits<std::int32_t>::max();
}

} // namespace

template <class T>
struct Str1HashMap<T>::Entry : CoreAllocated {
    Entry(const Str1& entryKey, const T& entryValue, std::uint32_t entryHash)
        : key(entryKey), value(entryValue), hash(entryHash)
    {
    }

    const Str1 key;
    T value;
    const std::uint32_t hash;
    Entry* next = nullptr; ///< owned by the map, lest a long chain is destroyed recursively
};

template <class T>
Str1HashMap<T>::Str1HashMap(std::int32_t capacity, float loadFactor) : m_loadFactor(loadFactor)
{
    allocTable(std::max(capacity, 1));
}

template <class T>
Str1HashMap<T>::~Str1HashMap()
{
    deleteEntries();
}

template <class T>
void Str1HashMap<T>::allocTable(std::int32_t capacity)
{
    const auto count = static_cast<std::size_t>(capacity);
    OwningArray<Entry*> table(count);
    std::fill_n(table.get(), count, nullptr);
    m_table = std::move(table);
    m_capacity = capacity;
    m_threshold = thresholdOf(capacity, m_loadFactor);
    ++m_tables;
}

template <class T>
void Str1HashMap<T>::deleteEntries()
{
    for (std::int32_t bucket = 0; bucket < m_capacity; ++bucket) {
        Entry* entry = std::exchange(head(bucket), nullptr);
        while (entry != nullptr) {
            const std::unique_ptr<Entry> dropped(entry);
            entry = entry->next;
        }
    }
}

template <class T>
std::int32_t Str1HashMap<T>::bucketOf(std::uint32_t hash) const noexcept
{
    return static_cast<std::int32_t>(hash % static_cast<std::uint32_t>(m_capacity));
}

template <class T>
typename Str1HashMap<T>::Entry*& Str1HashMap<T>::head(std::int32_t bucket) const noexcept
{
    return m_table[static_cast<std::size_t>(bucket)];
}

template <class T>
std::uint32_t Str1HashMap<T>::getKeyHashCode(const Str1& key) const
{
    return internal::hashOfUnits({key.getData0(), key.getLength()});
}

template <class T>
void Str1HashMap<T>::normalizeKey(Str1& out, const Str1& key) const
{
    out.setTo(key);
}

/// The link that leads to the entry of a key, null where there is none.
template <class T>
typename Str1HashMap<T>::Entry** Str1HashMap<T>::find(const Str1& normalized,
                                                      std::uint32_t hash) const
{
    for (Entry** link = &head(bucketOf(hash)); *link != nullptr; link = &(*link)->next) {
        if ((*link)->hash == hash && (*link)->key == normalized) return link;
    }
    return nullptr;
}

template <class T>
bool Str1HashMap<T>::containsKey(const Str1& key) const
{
    LookupKey normalized;
    normalizeKey(normalized, key);
    return find(normalized, getKeyHashCode(normalized)) != nullptr;
}

template <class T>
bool Str1HashMap<T>::get(const Str1& key, T& value) const
{
    LookupKey normalized;
    normalizeKey(normalized, key);
    Entry** const link = find(normalized, getKeyHashCode(normalized));
    if (link == nullptr) return false;
    value = (*link)->value;
    return true;
}

template <class T>
std::int32_t Str1HashMap<T>::getSize() const
{
    return m_size;
}

template <class T>
void Str1HashMap<T>::put(const Str1& key, const T& value, T* previous)
{
    Str1 normalized;
    normalizeKey(normalized, key);
    const std::uint32_t hash = getKeyHashCode(normalized);
    if (Entry** const link = find(normalized, hash)) {
        if (previous != nullptr) *previous = (*link)->value;
        (*link)->value = value;
        return;
    }

    auto entry = std::make_unique<Entry>(normalized, value, hash);
    if (m_size >= m_threshold) rehash();
    ++m_modifications;
    Entry*& first = head(bucketOf(hash));
    entry->next = first;
    first = entry.release();
    ++m_size;
}

template <class T>
void Str1HashMap<T>::remove(const Str1& key, T* previous)
{
    LookupKey normalized;
    normalizeKey(normalized, key);
    Entry** const link = find(normalized, getKeyHashCode(normalized));
    if (link == nullptr) return;

    if (previous != nullptr) *previous = (*link)->value;
    ++m_modifications;
    const std::unique_ptr<Entry> dropped(*link);
    *link = dropped->next;
    --m_size;
}

template <class T>
void Str1HashMap<T>::clear()
{
    deleteEntries();
    m_threshold = thresholdOf(m_capacity, m_loadFactor);
    ++m_tables;
}

template <class T>
void Str1HashMap<T>::rehash()
{
    const std::int32_t oldCapacity = m_capacity;
    OwningArray<Entry*> old = std::move(m_table);
    try {
        allocTable(static_cast<std::int32_t>(std::int64_t{oldCapacity} * 2 + 1));
    } catch (...) {
        m_table = std::move(old);
        throw;
    }
    for (std::int32_t bucket = oldCapacity - 1; bucket >= 0; --bucket) {
        Entry* entry = old[static_cast<std::size_t>(bucket)];
        while (entry != nullptr) {
            Entry* const next = entry->next;
            Entry*& first = head(bucketOf(entry->hash));
            entry->next = first;
            first = entry;
            entry = next;
        }
    }
}

template <class T>
void Str1HashMap<T>::toNextBucket(KeyValueIterator& iterator) const
{
    while (iterator.m_entry == nullptr && iterator.m_nextBucket < m_capacity) {
        iterator.m_entry = head(iterator.m_nextBucket++);
    }
}

template <class T>
void Str1HashMap<T>::iteratorInit(KeyValueIterator& iterator) const
{
    iterator = KeyValueIterator();
    iterator.m_map = this;
    iterator.m_modifications = m_modifications;
    iterator.m_tables = m_tables;
    toNextBucket(iterator);
}

template <class T>
bool Str1HashMap<T>::iteratorHasNext(KeyValueIterator& iterator) const
{
    return iterator.m_map == this && iterator.m_entry != nullptr &&
           iterator.m_modifications == m_modifications && iterator.m_tables == m_tables;
}

template <class T>
void Str1HashMap<T>::iteratorNext(KeyValueIterator& iterator, const Str1** key,
                                  const T** value) const
{
    if (!iteratorHasNext(iterator)) return;
    if (key != nullptr) *key = &iterator.m_entry->key;
    if (value != nullptr) *value = &iterator.m_entry->value;
    iterator.m_entry = iterator.m_entry->next;
    toNextBucket(iterator);
}

template <class T>
Str1HashMapLC<T>::~Str1HashMapLC() = default;

template <class T>
void Str1HashMapLC<T>::normalizeKey(Str1& out, const Str1& key) const
{
    out.setTo(key);
    out.toLower();
}

template class Str1HashMap<Str1>;
template class Str1HashMap<Reference<ComObject>>;
template class Str1HashMap<void*>;
template class Str1HashMapLC<Str1>;
template class Str1HashMapLC<Reference<ComObject>>;
template class Str1HashMapLC<void*>;

} // namespace orv
