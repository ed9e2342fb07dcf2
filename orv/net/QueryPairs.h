#pragma once

#include "orv/Reference.h"
#include "orv/collections/Fwd.h"
#include "orv/net/TextPool.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace orv {
class String;
}

namespace orv::net {

class QueryKey;

/// The pairs of a query, as a HashMap from QueryKey to String would have them: in its order, with
/// the first spelling of each key.
///
/// A query has a handful of pairs as a rule. Those are kept side by side, looked through one by one
/// and brought into order when they are walked; with more than MOST_FEW pairs there is such a map.
///
/// Errors: without memory nothing is changed. Threads: one at a time.
class QueryPairs {
public:
    using View = std::u16string_view;

    QueryPairs();
    QueryPairs(const QueryPairs& other);
    QueryPairs& operator=(const QueryPairs& other);
    ~QueryPairs();

    /// Whether there are no pairs.
    bool isEmpty() const noexcept { return m_few.empty() && m_many == nullptr; }
    /// Removes all pairs.
    void clear();

    /// Makes room for pairs of that many units in all.
    void reserve(std::size_t pairs, std::size_t units);

    /// Gives `key` the value `value`. Neither lies in here.
    void put(const internal::EscapedText& key, const internal::EscapedText& value);
    void remove(View key);

    /// Whether there is a pair for `key`, in any case.
    bool has(View key) const;
    /// Sets `value` to the value of `key`; false where there is none.
    bool get(View key, String& value) const;

    /// Calls `visit` with each key and its value.
    template <class Visit>
    void forEach(Visit visit) const
    {
        if (m_many != nullptr) {
            forEachOfMany(
                [](void* with, View key, View value) { (*static_cast<Visit*>(with))(key, value); },
                &visit);
            return;
        }
        Order order;
        const std::size_t count = m_few.size();
        if (count > 1) sortFew(order);
        for (std::size_t i = 0; i < count; ++i) {
            const Pair& pair = m_few[count > 1 ? order[i] % MOST_FEW : 0];
            visit(m_texts.get(pair.key), m_texts.get(pair.value));
        }
    }

private:
    static constexpr std::size_t MOST_FEW = 64;

    using Map = collections::Map<QueryKey, String>;
    using Order = std::array<std::uint16_t, MOST_FEW>;
    struct Pair {
        TextPool::Place key;
        TextPool::Place value;
        std::uint32_t hash; ///< of the key in lower case
    };

    void makeRoom(std::size_t units);
    std::size_t find(View key, std::uint32_t hash) const;
    std::size_t find(View key) const;
    void becomeMany();
    void sortFew(Order& order) const;
    void forEachOfMany(void (*visit)(void*, View, View), void* with) const;

    TextPool m_texts;        ///< of the few
    std::vector<Pair> m_few; ///< in the order in which they were put
    Reference<Map> m_many;   ///< null as long as there are few
};

} // namespace orv::net
