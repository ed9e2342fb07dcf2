#include "orv/collections/quark/HashMapEntrySet.h"

#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/HashMapIterator.h"

namespace orv::collections::quark {

// A view of a const map is const itself where it is handed out.
HashMapEntrySet::HashMapEntrySet(const HashMap* map) : m_map(const_cast<HashMap*>(map)) {}

HashMapEntrySet::~HashMapEntrySet() noexcept(false) = default;

bool HashMapEntrySet::contains(const IORVUnknown* element) const
{
    return m_map->containsEntry(element);
}

std::int32_t HashMapEntrySet::getSize() const
{
    return m_map->getSize();
}

Reference<Iterator> HashMapEntrySet::createIterator()
{
    return makeReference<HashMapIterator>(m_map.get(), HashMapIterator::ENTRIES);
}

Reference<ConstIterator> HashMapEntrySet::createConstIterator() const
{
    return makeReference<HashMapIterator>(m_map.get(), HashMapIterator::ENTRIES);
}

Reference<const Set> HashMap::createEntrySet() const
{
    return makeReference<HashMapEntrySet>(this);
}

Reference<Set> HashMap::createEntrySet()
{
    return makeReference<HashMapEntrySet>(this);
}

} // namespace orv::collections::quark
