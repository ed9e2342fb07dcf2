#include "orv/collections/quark/AbstractMapViews.h"

#include "orv/collections/internal/EntryOf.h"

namespace orv::collections::quark {

namespace {

/// A walk over the entries of a map that gives a part of each.
class EntryWalk : public ::orv::quark::ImplementsVirtual<ComObject, Iterator> {
public:
    explicit EntryWalk(AbstractMap& map)
        : m_entries(static_cast<Map&>(map).createEntrySet()->createIterator())
    {
    }
    EntryWalk(const EntryWalk&) = delete;
    EntryWalk& operator=(const EntryWalk&) = delete;

    bool hasNext() override { return m_entries->hasNext(); }
    void remove() override { m_entries->remove(); }
    Reference<IORVUnknown> next() override
    {
        const Reference<IORVUnknown> entry = m_entries->next();
        return partOf(internal::entryOf(entry.get()));
    }

private:
    virtual Reference<IORVUnknown> partOf(MapEntry& entry) const = 0;

    Reference<Iterator> m_entries;
};

} // namespace

class AbstractMapKeySet::KeySetIterator : public EntryWalk {
public:
    using EntryWalk::EntryWalk;

private:
    Reference<IORVUnknown> partOf(MapEntry& entry) const override { return entry.getKey(); }
};

class AbstractMapValueCollection::ValueCollectionIterator : public EntryWalk {
public:
    using EntryWalk::EntryWalk;

private:
    Reference<IORVUnknown> partOf(MapEntry& entry) const override { return entry.getValue(); }
};

AbstractMapKeySet::AbstractMapKeySet(const AbstractMap* map)
    : AbstractSet(map->m_keyComparator.get()), m_map(const_cast<AbstractMap*>(map))
{
}

AbstractMapKeySet::~AbstractMapKeySet() noexcept(false) = default;

bool AbstractMapKeySet::contains(const IORVUnknown* key) const
{
    return m_map->containsKey(key);
}

Reference<Iterator> AbstractMapKeySet::createIterator()
{
    return makeReference<KeySetIterator>(*m_map);
}

Reference<ConstIterator> AbstractMapKeySet::createConstIterator() const
{
    return makeReference<KeySetIterator>(*m_map);
}

std::int32_t AbstractMapKeySet::getSize() const
{
    return m_map->getSize();
}

AbstractMapValueCollection::AbstractMapValueCollection(const AbstractMap* map)
    : AbstractCollection(map->m_valueComparator.get()), m_map(const_cast<AbstractMap*>(map))
{
}

AbstractMapValueCollection::~AbstractMapValueCollection() noexcept(false) = default;

bool AbstractMapValueCollection::contains(const IORVUnknown* value) const
{
    return m_map->containsValue(value);
}

Reference<Iterator> AbstractMapValueCollection::createIterator()
{
    return makeReference<ValueCollectionIterator>(*m_map);
}

Reference<ConstIterator> AbstractMapValueCollection::createConstIterator() const
{
    return makeReference<ValueCollectionIterator>(*m_map);
}

std::int32_t AbstractMapValueCollection::getSize() const
{
    return m_map->getSize();
}

Reference<const Set> AbstractMap::createKeySet() const
{
    return makeReference<AbstractMapKeySet>(this);
}

Reference<Set> AbstractMap::createKeySet()
{
    return makeReference<AbstractMapKeySet>(this);
}

Reference<const Collection> AbstractMap::createValueCollection() const
{
    return makeReference<AbstractMapValueCollection>(this);
}

Reference<Collection> AbstractMap::createValueCollection()
{
    return makeReference<AbstractMapValueCollection>(this);
}

} // namespace orv::collections::quark
