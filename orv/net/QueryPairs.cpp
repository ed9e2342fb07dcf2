#include "orv/net/QueryPairs.h"

#include "orv/collections/Map.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/internal/UnitScan.h"
#include "orv/net/QueryKey.h"
#include "orv/net/internal/EscapedText.h"

#include <algorithm>

namespace orv::net {

using collections::quark::HashMap;
using internal::EscapedText;

namespace {

String textOf(std::u16string_view text)
{
    return String(text.data(), static_cast<std::int32_t>(text.size()));
}

String textOf(const EscapedText& text)
{
    const auto length = static_cast<std::int32_t>(text.length());
    String result(length + 1);
    text.write(result.getWriteLock(length + 1));
    result.releaseWriteLock(length);
    return result;
}

std::u16string_view unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

std::uint32_t hashOf(std::u16string_view key)
{
    return ::orv::internal::hashOfFoldedUnits({key.data(), static_cast<std::int32_t>(key.size())});
}

bool equalKeys(std::u16string_view a, std::u16string_view b)
{
    return a.size() == b.size() &&
           ::orv::internal::orderOfFoldedUnits(a.data(), b.data(),
                                               static_cast<std::int32_t>(a.size())) == 0;
}

} // namespace

QueryPairs::QueryPairs() = default;

QueryPairs::~QueryPairs() = default;

// Keys and values in a map, which nobody changes, are common to the copies.
QueryPairs::QueryPairs(const QueryPairs& other) : m_texts(other.m_texts), m_few(other.m_few)
{
    if (other.m_many == nullptr) return;
    const auto& map = dynamic_cast<const HashMap&>(*other.m_many->getUntyped());
    m_many = makeReference<Map>(makeReference<HashMap>(map).get());
}

QueryPairs& QueryPairs::operator=(const QueryPairs& other)
{
    QueryPairs copy(other);
    std::swap(m_texts, copy.m_texts);
    m_few.swap(copy.m_few);
    m_many = copy.m_many;
    return *this;
}

void QueryPairs::clear()
{
    m_texts.clear();
    m_few.clear();
    m_many = nullptr;
}

void QueryPairs::reserve(std::size_t pairs, std::size_t units)
{
    if (m_many != nullptr) return;
    m_few.reserve(std::min(m_few.size() + pairs, MOST_FEW));
    makeRoom(units);
}

void QueryPairs::makeRoom(std::size_t units)
{
    m_texts.makeRoom(units, [this](auto visit) {
        for (Pair& pair : m_few) {
            visit(pair.key);
            visit(pair.value);
        }
    });
}

std::size_t QueryPairs::find(View key, std::uint32_t hash) const
{
    const auto found = std::find_if(m_few.begin(), m_few.end(), [&](const Pair& pair) {
        return pair.hash == hash && equalKeys(m_texts.get(pair.key), key);
    });
    return static_cast<std::size_t>(found - m_few.begin());
}

std::size_t QueryPairs::find(View key) const
{
    return find(key, hashOf(key));
}

void QueryPairs::put(const EscapedText& key, const EscapedText& value)
{
    if (m_many == nullptr) {
        makeRoom(key.length() + value.length());
        const TextPool::Place added = m_texts.add(key);
        const std::uint32_t hash = hashOf(m_texts.get(added));
        const std::size_t index = find(m_texts.get(added), hash);
        if (index < m_few.size()) {
            m_texts.takeBack(added);
            m_few[index].value = m_texts.add(value);
            return;
        }
        if (m_few.size() < MOST_FEW) {
            m_few.push_back({added, m_texts.add(value), hash});
            return;
        }
        becomeMany();
    }
    m_many->put(makeReference<QueryKey>(textOf(key)).get(),
                makeReference<String>(textOf(value)).get());
}

void QueryPairs::becomeMany()
{
    auto many = makeReference<Map>(makeReference<HashMap>().get());
    for (const Pair& pair : m_few) {
        many->put(makeReference<QueryKey>(textOf(m_texts.get(pair.key))).get(),
                  makeReference<String>(textOf(m_texts.get(pair.value))).get());
    }
    clear();
    m_many = many;
}

void QueryPairs::remove(View key)
{
    if (m_many != nullptr) {
        m_many->remove(makeReference<QueryKey>(textOf(key)).get());
        if (m_many->isEmpty()) m_many = nullptr;
        return;
    }
    const std::size_t index = find(key);
    if (index < m_few.size()) m_few.erase(m_few.begin() + static_cast<std::ptrdiff_t>(index));
}

bool QueryPairs::has(View key) const
{
    if (m_many != nullptr) return m_many->containsKey(makeReference<QueryKey>(textOf(key)).get());
    return find(key) < m_few.size();
}

bool QueryPairs::get(View key, String& value) const
{
    if (m_many != nullptr) {
        const Reference<String> found = m_many->get(makeReference<QueryKey>(textOf(key)).get());
        if (found != nullptr) value.setAddRef(*found);
        return found != nullptr;
    }
    const std::size_t index = find(key);
    if (index == m_few.size()) return false;
    const View found = m_texts.get(m_few[index].value);
    value.setTo(found.data(), static_cast<std::int32_t>(found.size()));
    return true;
}

// A HashMap that has not grown walks its buckets from the last to the first, and in each the pair
// put last comes first.
void QueryPairs::sortFew(Order& order) const
{
    static_assert(HashMap::DEFAULT_CAPACITY * MOST_FEW <= 0x10000);
    static_assert(MOST_FEW < HashMap::DEFAULT_CAPACITY * HashMap::DEFAULT_LOAD);
    for (std::size_t i = 0; i < m_few.size(); ++i) {
        const std::size_t bucket = m_few[i].hash % std::uint32_t{HashMap::DEFAULT_CAPACITY};
        order[i] = static_cast<std::uint16_t>(bucket * MOST_FEW + i);
    }
    const auto end = order.begin() + static_cast<std::ptrdiff_t>(m_few.size());
    std::sort(order.begin(), end, std::greater<>());
}

void QueryPairs::forEachOfMany(void (*visit)(void*, View, View), void* with) const
{
    for (const auto& [key, value] : *m_many) visit(with, unitsOf(*key), unitsOf(*value));
}

} // namespace orv::net
