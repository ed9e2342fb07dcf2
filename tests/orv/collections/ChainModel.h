#pragma once

#include <algorithm>
#include <cstdint>
#include <list>
#include <optional>
#include <utility>
#include <vector>

namespace orv::test {

/// The tables of the hash maps, written down as they are told: a list for each bucket.
class ChainModel {
public:
    using Value = std::optional<std::int32_t>; ///< none is null

    ChainModel(std::int32_t capacity, float load)
        : m_load(load), m_table(static_cast<std::size_t>(std::max(capacity, 1)))
    {
    }

    Value put(std::int32_t key, std::uint32_t hash, Value value)
    {
        for (Entry& entry : bucket(hash)) {
            if (entry.key == key) return std::exchange(entry.value, value);
        }
        if (size >= static_cast<std::int32_t>(static_cast<float>(m_table.size()) * m_load)) grow();
        bucket(hash).push_front({hash, key, value});
        ++size;
        return {};
    }

    Value get(std::int32_t key, std::uint32_t hash)
    {
        for (const Entry& entry : bucket(hash)) {
            if (entry.key == key) return entry.value;
        }
        return {};
    }

    Value remove(std::int32_t key, std::uint32_t hash)
    {
        const Value value = get(key, hash);
        size -= static_cast<std::int32_t>(
            bucket(hash).remove_if([&](const Entry& entry) { return entry.key == key; }));
        return value;
    }

    void clear()
    {
        for (auto& chain : m_table) chain.clear();
    }

    /// The keys from the last bucket to the first, or the other way.
    std::vector<std::int32_t> keys(bool downward = true) const
    {
        std::vector<std::int32_t> keys;
        for (std::size_t i = 0; i < m_table.size(); ++i) {
            const auto& chain = m_table[downward ? m_table.size() - 1 - i : i];
            for (const Entry& entry : chain) keys.push_back(entry.key);
        }
        return keys;
    }

    std::int32_t size = 0;

private:
    struct Entry {
        std::uint32_t hash;
        std::int32_t key;
        Value value;
    };
    using Chain = std::list<Entry>;

    Chain& bucket(std::uint32_t hash) { return m_table[hash % m_table.size()]; }

    void grow()
    {
        std::vector<Chain> old(m_table.size() * 2 + 1);
        old.swap(m_table);
        for (std::size_t i = old.size(); i-- > 0;) {
            for (const Entry& entry : old[i]) bucket(entry.hash).push_front(entry);
        }
    }

    float m_load;
    std::vector<Chain> m_table;
};

} // namespace orv::test
