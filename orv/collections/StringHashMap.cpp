#include "orv/collections/StringHashMap.h"

#include "orv/collections/Set.h"
#include "orv/collections/internal/TableGrowth.h"
#include "orv/collections/quark/HashSet.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <cstring>

namespace orv::collections {

using internal::TextKey;

namespace {

/// A read bracket over a key.
class KeyText {
public:
    explicit KeyText(const String& key) : m_key(key)
    {
        throwIfFailed(key.GetReadLock(&m_units.data));
        m_units.length = key.getLength();
    }
    KeyText(const KeyText&) = delete;
    KeyText& operator=(const KeyText&) = delete;
    ~KeyText() { m_key.ReleaseReadLock(); }

    const char16_t* data() const noexcept { return m_units.data; }
    std::int32_t length() const noexcept { return m_units.length; }
    ::orv::internal::Units units() const noexcept { return m_units; }

private:
    const String& m_key;
    ::orv::internal::Units m_units{nullptr, 0};
};

} // namespace

bool TextKey::matches(const Entry& entry) const noexcept
{
    return entry.length == text.length &&
           ::orv::internal::equalUnits(of(entry).data, text.data, text.length);
}

void TextKey::store(Entry& entry) const noexcept
{
    entry.length = text.length;
    if (text.length == 0) return;
    std::memcpy(reinterpret_cast<std::byte*>(&entry) + UNITS_AT, text.data,
                static_cast<std::size_t>(text.length) * sizeof(char16_t));
}

StringHashMap::StringHashMap(std::int32_t capacity, float loadFactor)
    : m_loadFactor(loadFactor), m_table(std::max(capacity, 1))
{
    m_threshold = internal::thresholdOf(m_table.capacity(), loadFactor);
}

StringHashMap::~StringHashMap() noexcept(false) = default;

std::int32_t StringHashMap::calcCapacity(std::int32_t size)
{
    return internal::capacityFor(size);
}

void StringHashMap::rehash()
{
    m_table.rehash(internal::grownCapacity(m_table.capacity()));
    m_threshold = internal::thresholdOf(m_table.capacity(), m_loadFactor);
}

std::uint32_t StringHashMap::getKeyHashCode(const char16_t* text, std::int32_t length,
                                            bool ignoreCase) const
{
    const Units units{text, length};
    return ignoreCase ? ::orv::internal::hashOfFoldedUnits(units)
                      : ::orv::internal::hashOfUnits(units);
}

bool StringHashMap::keysEqual(const String& key, const char16_t* text, std::int32_t length,
                              bool ignoreCase) const
{
    return key.String::getLength() == length && key.equals(text, length, ignoreCase);
}

/// A key to look for as it stands, which most texts allow without a bracket.
struct StringHashMap::Sought {
    const StringHashMap& map;
    const String& key;

    bool matches(const Entry& entry) const
    {
        const Units text = TextKey::of(entry);
        return map.keysEqual(key, text.data, text.length, false);
    }
};

StringHashMap::Entry* StringHashMap::find(const String& key, std::uint32_t hash) const
{
    return m_table.find(Sought{*this, key}, hash);
}

void StringHashMap::clear()
{
    m_table.clear();
    m_threshold = internal::thresholdOf(m_table.capacity(), m_loadFactor);
}

Reference<Object> StringHashMap::get(const char16_t* key, std::int32_t length)
{
    const Units text{key, length == -1 ? ORVStrLenW_32(key) : length};
    const std::uint32_t hash = getKeyHashCode(text.data, text.length, false);
    const Entry* const entry = m_table.find(TextKey{text}, hash);
    return entry != nullptr ? Reference<Object>(entry->value) : nullptr;
}

Reference<Object> StringHashMap::get(const String& key)
{
    const Entry* const entry = find(key, key.hashCode(false));
    return entry != nullptr ? Reference<Object>(entry->value) : nullptr;
}

std::int32_t StringHashMap::getSize() const
{
    return m_size;
}

bool StringHashMap::containsKey(const char16_t* key, std::int32_t length) const
{
    // get() changes nothing; that it can be called on a map to be changed only is its signature's.
    return const_cast<StringHashMap*>(this)->get(key, length) != nullptr;
}

bool StringHashMap::containsKey(const String& key) const
{
    const KeyText text(key);
    return containsKey(text.data(), text.length());
}

bool StringHashMap::isEmpty() const
{
    return getSize() == 0;
}

Reference<Object> StringHashMap::put(const String& key, Object* value)
{
    const std::uint32_t hash = key.hashCode(false);
    if (Entry* const entry = find(key, hash)) return m_table.exchange(*entry, value);

    const KeyText text(key);
    const TextKey copied{text.units()};
    m_table.reserve(copied);
    if (m_size >= m_threshold) rehash();
    m_table.insert(copied, hash, value);
    ++m_size;
    return nullptr;
}

Reference<Object> StringHashMap::remove(const String& key)
{
    Entry* const entry = find(key, key.hashCode(false));
    if (entry == nullptr) return nullptr;
    --m_size;
    return m_table.take(*entry);
}

Reference<const Set<String>> StringHashMap::createKeySet() const
{
    const auto keys = makeReference<Set<String>>(makeReference<quark::HashSet>().get());
    m_table.forEach([&](const Entry& entry) {
        const Units text = TextKey::of(entry);
        keys->add(makeReference<String>(text.data, text.length).get());
    });
    return keys;
}

} // namespace orv::collections
