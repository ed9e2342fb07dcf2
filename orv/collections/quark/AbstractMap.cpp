#include "orv/collections/quark/AbstractMap.h"

#include "orv/Exceptions.h"
#include "orv/collections/DefaultComparator.h"
#include "orv/collections/internal/Comparing.h"
#include "orv/collections/internal/EntryOf.h"

namespace orv::collections::quark {

using internal::compareBy;
using internal::entryOf;
using internal::equalBy;

AbstractMap::AbstractMap()
    : m_keyComparator(GetDefaultComparator()), m_valueComparator(m_keyComparator)
{
}

AbstractMap::AbstractMap(const IORVComparator* keyComparator, const IORVComparator* valueComparator)
    : m_keyComparator(const_cast<IORVComparator*>(keyComparator)),
      m_valueComparator(const_cast<IORVComparator*>(valueComparator))
{
}

AbstractMap::AbstractMap(const AbstractMap& other)
    : IORVUnknown(), Map(), ImplementsVirtual(), m_keyComparator(other.m_keyComparator),
      m_valueComparator(other.m_valueComparator)
{
}

AbstractMap& AbstractMap::operator=(const AbstractMap&) noexcept
{
    return *this;
}

AbstractMap::~AbstractMap() noexcept(false) = default;

void AbstractMap::clear()
{
    createEntrySet()->clear();
}

bool AbstractMap::containsKey(const IORVUnknown* key) const
{
    for (const IORVUnknown* element : createEntrySet()) {
        const Reference<IORVUnknown> own = entryOf(element).getKey();
        if (equalBy(m_keyComparator.get(), own.get(), key)) return true;
    }
    return false;
}

bool AbstractMap::containsValue(const IORVUnknown* value) const
{
    for (const IORVUnknown* element : createEntrySet()) {
        const Reference<IORVUnknown> own = entryOf(element).getValue();
        if (equalBy(m_valueComparator.get(), own.get(), value)) return true;
    }
    return false;
}

Reference<IORVUnknown> AbstractMap::get(const IORVUnknown* key)
{
    for (const IORVUnknown* element : createEntrySet()) {
        MapEntry& entry = entryOf(element);
        if (equalBy(m_keyComparator.get(), entry.getKey().get(), key)) return entry.getValue();
    }
    return nullptr;
}

std::int32_t AbstractMap::getSize() const
{
    return createEntrySet()->getSize();
}

Reference<IORVUnknown> AbstractMap::put(IORVUnknown*, IORVUnknown*)
{
    throw UnsupportedOperationException();
}

void AbstractMap::putAll(const Map& other)
{
    for (const IORVUnknown* element : other.createEntrySet()) {
        MapEntry& entry = entryOf(element);
        put(entry.getKey().get(), entry.getValue().get());
    }
}

Reference<IORVUnknown> AbstractMap::remove(const IORVUnknown* key)
{
    Reference<IORVUnknown> last;
    const Reference<Iterator> iterator = createEntrySet()->createIterator();
    while (iterator->hasNext()) {
        const Reference<IORVUnknown> element = iterator->next();
        MapEntry& entry = entryOf(element.get());
        if (!equalBy(m_keyComparator.get(), entry.getKey().get(), key)) continue;
        last = entry.getValue();
        iterator->remove();
    }
    return last;
}

std::int32_t AbstractMap::compareTo(const Object& other) const
{
    if (&other == static_cast<const Object*>(this)) return 0;
    const auto* const map = dynamic_cast<const Map*>(&other);
    if (map == nullptr) throwCastFailed();
    return compareToMap(*map);
}

bool AbstractMap::equals(const Object& other) const
{
    if (&other == static_cast<const Object*>(this)) return true;
    const auto* const map = dynamic_cast<const Map*>(&other);
    return map != nullptr && getSize() == map->getSize() && compareToMap(*map) == 0;
}

std::uint32_t AbstractMap::hashCode() const
{
    std::uint32_t sum = 0;
    for (const IORVUnknown* element : createEntrySet()) sum += entryOf(element).hashCode();
    return sum;
}

std::int32_t AbstractMap::compareToMap(const Map& other) const
{
    // Looking a value up changes nothing, though get() is not const.
    auto& others = const_cast<Map&>(other);
    for (const IORVUnknown* element : createEntrySet()) {
        MapEntry& entry = entryOf(element);
        const Reference<IORVUnknown> key = entry.getKey();
        const Reference<IORVUnknown> value = entry.getValue();
        if (value == nullptr) {
            if (!other.containsKey(key.get())) return 1;
            if (others.get(key.get()) != nullptr) return -1;
            continue;
        }
        const std::int32_t order =
            compareBy(m_valueComparator.get(), value.get(), others.get(key.get()).get());
        if (order != 0) return order;
    }
    return getSize() - other.getSize();
}

} // namespace orv::collections::quark
