#include "orv/collections/quark/HashMap.h"

#include "orv/collections/DropAll.h"
#include "orv/collections/internal/DirectOrder.h"
#include "orv/collections/internal/EntryOf.h"
#include "orv/collections/internal/EntryPool.h"
#include "orv/collections/internal/TableGrowth.h"

#include <algorithm>
#include <utility>

namespace orv::collections::quark {

namespace {

/// Gives a place back when what stood there is gone, even if it threw.
struct Vacated {
    internal::EntryPool& pool;
    void* place;

    ~Vacated() { pool.give(place); }
};

} // namespace

HashMap::HashMap(std::int32_t capacity, float loadFactor)
    : m_loadFactor(loadFactor), m_directKeys(true), m_directValues(true)
{
    allocTable(std::max(capacity, 1));
}

HashMap::HashMap(const IORVComparator* keyComparator, const IORVComparator* valueComparator,
                 std::int32_t capacity, float loadFactor)
    : AbstractMap(keyComparator, valueComparator), m_loadFactor(loadFactor),
      m_directKeys(internal::isDirect(keyComparator)),
      m_directValues(internal::isDirect(valueComparator))
{
    allocTable(std::max(capacity, 1));
}

HashMap::HashMap(const Map& source, float loadFactor)
    : HashMap(calcCapacity(source.getSize()), loadFactor)
{
    AbstractMap::putAll(source);
}

HashMap::HashMap(const Map& source, const IORVComparator* keyComparator,
                 const IORVComparator* valueComparator, float loadFactor)
    : HashMap(keyComparator, valueComparator, calcCapacity(source.getSize()), loadFactor)
{
    AbstractMap::putAll(source);
}

HashMap::HashMap(const HashMap& source)
    : HashMap(source.m_keyComparator.get(), source.m_valueComparator.get(),
              source.m_buckets.capacity(), source.m_loadFactor)
{
    // Not by a walk over its entry set, which would count on the source being on the heap.
    const Buckets& buckets = source.m_buckets;
    for (std::int32_t i = buckets.usedBefore(buckets.capacity()); i >= 0;
         i = buckets.usedBefore(i)) {
        for (const HashMapEntry* entry = buckets.head(i); entry != nullptr; entry = entry->m_next) {
            HashMap::put(entry->m_key.get(), entry->m_value.get());
        }
    }
}

HashMap::~HashMap() noexcept(false)
{
    if (m_pool == nullptr) return;
    struct Retired {
        internal::EntryPool* pool;

        ~Retired() { pool->retire(); }
    };
    const Retired retired{m_pool};
    dropEntries(m_buckets);
}

std::int32_t HashMap::calcCapacity(std::int32_t size)
{
    return internal::capacityFor(size);
}

std::uint32_t HashMap::getKeyHashCode(const IORVUnknown* key) const
{
    return internal::hashBy(m_keyComparator.get(), m_directKeys, key);
}

std::uint32_t HashMap::getValueHashCode(const IORVUnknown* value) const
{
    return internal::hashBy(m_valueComparator.get(), m_directValues, value);
}

bool HashMap::keysEqual(const IORVUnknown* a, const IORVUnknown* b) const
{
    return internal::equalBy(m_keyComparator.get(), m_directKeys, a, b);
}

bool HashMap::valuesEqual(const IORVUnknown* a, const IORVUnknown* b) const
{
    return internal::equalBy(m_valueComparator.get(), m_directValues, a, b);
}

void HashMap::allocTable(std::int32_t capacity)
{
    m_buckets = Buckets(capacity);
    m_threshold = internal::thresholdOf(capacity, m_loadFactor);
}

HashMapEntry* HashMap::find(const IORVUnknown* key, std::uint32_t hash) const
{
    if (!m_buckets.isOpen()) return nullptr;
    HashMapEntry* entry = m_buckets.head(m_buckets.bucketOf(hash));
    for (; entry != nullptr; entry = entry->m_next) {
        if (entry->m_hash != hash) continue;
        // Most callers want the value next, so it comes while the keys are compared.
        __builtin_prefetch(entry->m_value.get(), 1);
        if (keysEqual(entry->m_key.get(), key)) return entry;
    }
    return nullptr;
}

/// The entry before `entry` in its bucket, null where it is the first.
HashMapEntry* HashMap::previousOf(const HashMapEntry* entry, std::int32_t bucket) const
{
    HashMapEntry* previous = m_buckets.head(bucket);
    if (previous == entry) return nullptr;
    while (previous->m_next != entry) previous = previous->m_next;
    return previous;
}

bool HashMap::containsKey(const IORVUnknown* key) const
{
    return find(key, getKeyHashCode(key)) != nullptr;
}

bool HashMap::containsValue(const IORVUnknown* value) const
{
    for (std::int32_t i = m_buckets.usedBefore(m_buckets.capacity()); i >= 0;
         i = m_buckets.usedBefore(i)) {
        const HashMapEntry* entry = m_buckets.head(i);
        for (; entry != nullptr; entry = entry->m_next) {
            if (valuesEqual(entry->m_value.get(), value)) return true;
        }
    }
    return false;
}

bool HashMap::containsEntry(const IORVUnknown* element) const
{
    MapEntry& sought = internal::entryOf(element);
    const Reference<IORVUnknown> key = sought.getKey();
    const HashMapEntry* const entry = find(key.get(), getKeyHashCode(key.get()));
    return entry != nullptr && valuesEqual(entry->m_value.get(), sought.getValue().get());
}

Reference<IORVUnknown> HashMap::get(const IORVUnknown* key)
{
    const HashMapEntry* const entry = find(key, getKeyHashCode(key));
    return entry != nullptr ? entry->m_value : nullptr;
}

std::int32_t HashMap::getSize() const
{
    return m_size;
}

Reference<IORVUnknown> HashMap::put(IORVUnknown* key, IORVUnknown* value)
{
    const std::uint32_t hash = getKeyHashCode(key);
    if (HashMapEntry* const entry = find(key, hash)) return entry->setValue(value);

    if (m_pool == nullptr) m_pool = internal::EntryPool::create();
    m_pool->reserve();
    if (m_size >= m_threshold) rehash();
    if (!m_buckets.isOpen()) m_buckets.open();
    ++m_modCount;
    putFirst(new (m_pool->take()) HashMapEntry(key, value, hash));
    ++m_size;
    return nullptr;
}

void HashMap::putFirst(HashMapEntry* entry) noexcept
{
    const std::int32_t bucket = m_buckets.bucketOf(entry->m_hash);
    entry->m_next = m_buckets.head(bucket);
    m_buckets.setHead(bucket, entry);
}

void HashMap::rehash()
{
    Buckets old(internal::grownCapacity(m_buckets.capacity()));
    old.open();
    std::swap(m_buckets, old);
    m_threshold = internal::thresholdOf(m_buckets.capacity(), m_loadFactor);
    for (std::int32_t i = old.usedBefore(old.capacity()); i >= 0; i = old.usedBefore(i)) {
        for (HashMapEntry* entry = old.head(i); entry != nullptr;) {
            putFirst(std::exchange(entry, entry->m_next));
        }
    }
}

Reference<IORVUnknown> HashMap::remove(const IORVUnknown* key)
{
    HashMapEntry* const entry = find(key, getKeyHashCode(key));
    if (entry == nullptr) return nullptr;
    Reference<IORVUnknown> value = entry->m_value;
    const std::int32_t bucket = m_buckets.bucketOf(entry->m_hash);
    removeEntry(entry, previousOf(entry, bucket), bucket);
    return value;
}

void HashMap::removeEntry(HashMapEntry* entry, HashMapEntry* previous, std::int32_t bucket)
{
    ++m_modCount;
    if (previous != nullptr) {
        previous->m_next = entry->m_next;
    } else if (entry->m_next != nullptr) {
        m_buckets.setHead(bucket, entry->m_next);
    } else {
        m_buckets.setEmpty(bucket);
    }
    --m_size;
    drop(entry);
}

/// Gives the map's count on an entry back that it no longer leads to.
void HashMap::drop(HashMapEntry* entry)
{
    if (entry->GetSettledRefCount() == 1) {
        const Vacated vacated{*m_pool, entry};
        entry->~HashMapEntry();
        return;
    }
    entry->m_home = m_pool;
    m_pool->lend();
    entry->Release();
}

void HashMap::clear()
{
    Buckets old = std::exchange(m_buckets, Buckets(m_buckets.capacity()));
    m_threshold = internal::thresholdOf(m_buckets.capacity(), m_loadFactor);
    ++m_tables;
    dropEntries(old);
}

/// Drops what `buckets` lead to, one by one and not along the chains, which may be long.
void HashMap::dropEntries(Buckets& buckets)
{
    std::int32_t bucket = buckets.capacity();
    HashMapEntry* next = nullptr;
    internal::dropAll([&] {
        if (next == nullptr) {
            bucket = buckets.usedBefore(bucket);
            if (bucket < 0) return false;
            next = buckets.head(bucket);
        }
        drop(std::exchange(next, next->m_next));
        return true;
    });
}

} // namespace orv::collections::quark
