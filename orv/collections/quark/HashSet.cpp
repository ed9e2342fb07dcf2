#include "orv/collections/quark/HashSet.h"

#include "orv/Failure.h"
#include "orv/collections/DefaultComparator.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/HashMapIterator.h"

#include <cstddef>
#include <new>

namespace orv::collections::quark {

namespace {

/// The value of every key of every set.
///
/// Neither counted nor destroyed: sets of several threads would fight for its count, and sets may
/// outlive the library's unload.
class Marker final : public Object {
public:
    std::uint32_t AddRef() const override { return 1; }
    std::uint32_t Release() const override { return 1; }

    static IORVUnknown* get()
    {
        alignas(Marker) static std::byte place[sizeof(Marker)];
        static IORVUnknown* const marker = (new (place) Marker)->GetUnknown();
        return marker;
    }
};

} // namespace

HashSet::HashSet() : m_map(makeReference<HashMap>()) {}

HashSet::HashSet(const IORVComparator* comparator)
    : AbstractSet(comparator),
      m_map(makeReference<HashMap>(comparator, GetDefaultComparator().get(),
                                   HashMap::DEFAULT_CAPACITY, HashMap::DEFAULT_LOAD))
{
}

HashSet::HashSet(const Collection& source) : HashSet()
{
    AbstractSet::addAll(source);
}

HashSet::HashSet(const Collection& source, const IORVComparator* comparator) : HashSet(comparator)
{
    AbstractSet::addAll(source);
}

HashSet::HashSet(const HashSet& source)
    : IORVUnknown(), Collection(), Set(), AbstractSet(source),
      m_map(makeReference<HashMap>(*source.m_map))
{
}

HashSet::~HashSet() noexcept(false) = default;

bool HashSet::add(IORVUnknown* element)
{
    return m_map->put(element, Marker::get()) == nullptr;
}

void HashSet::clear()
{
    m_map->clear();
}

bool HashSet::contains(const IORVUnknown* element) const
{
    return m_map->containsKey(element);
}

std::int32_t HashSet::getSize() const
{
    return m_map->getSize();
}

bool HashSet::remove(const IORVUnknown* element)
{
    return m_map->remove(element) != nullptr;
}

std::uint32_t HashSet::hashCode() const
{
    return m_map->hashCode();
}

std::int32_t HashSet::compareTo(const Object& other) const
{
    if (&other == static_cast<const Object*>(this)) return 0;
    const auto* const set = dynamic_cast<const HashSet*>(&other);
    if (set == nullptr) throwCastFailed();
    return m_map->compareTo(*set->m_map);
}

bool HashSet::equals(const Object& other) const
{
    return compareTo(other) == 0;
}

Reference<Iterator> HashSet::createIterator()
{
    return makeReference<HashMapIterator>(m_map.get(), HashMapIterator::KEYS);
}

Reference<ConstIterator> HashSet::createConstIterator() const
{
    return makeReference<HashMapIterator>(m_map.get(), HashMapIterator::KEYS);
}

} // namespace orv::collections::quark
