#pragma once

#include <cstdint>
#include <list>
#include <optional>
#include <utility>
#include <vector>

namespace orv::test {

/// The tables of the hash maps, written down as they are told: a list for each bucket.
class ChainModel {
public:
    struct Entry {
        std::uint32_t hash;
        std::int32_t key;
        std::optional<std::int32_t> value; ///< none is null
    };

    ChainModel(std::int32_t capacity, float load)
        : m_load(load), m_table(static_cast<std::size_t>(capacity < 1 ? 1 : capacity))
    {
    }

    std::optional<std::int32_t> put(std::int32_t key, std::uint32_t hash,
                                    std::optional<std::int32_t> value)
    {
        if (Entry* const entry = find(key, hash)) return std::exchange(entry->value, value);
        if (size >= static_cast<std::int32_t>(static_cast<float>(m_table.size()) * m_load)) grow();
        bucket(hash).push_front({hash, key, value});
        ++size;
        return {};
    }

    std::optional<std::int32_t> get(std::int32_t key, std::uint32_t hash)
    {
        Entry* const entry = find(key, hash);
        return entry != nullptr ? entry->value : std::nullopt;
    }

    std::optional<std::int32_t> remove(std::int32_t key, std::uint32_t hash)
    {
        const auto value = get(key, hash);
        size -= static_cast<std::int32_t>(
            bucket(hash).remove_if([&](const Entry& entry) { return entry.key == key; }));
        return value;
    }

    void clear()
    {
        for (auto& chain : m_table) chain.clear();
    }

    /// The entries from the first bucket to the last.
    std::vector<Entry> upward() const
    {
        std::vector<Entry> entries;
        for (const auto& chain : m_table) entries.insert(entries.end(), chain.begin(), chain.end());
        return entries;
    }

    /// The keys from the last bucket to the first.
    std::vector<std::int32_t> downward() const
    {
        std::vector<std::int32_t> keys;
        for (std::size_t i = m_table.size(); i-- > 0;) {
            for (const Entry& entry : m_table[i]) keys.push_back(entry.key);
        }
        return keys;
    }

    std::int32_t size = 0;

private:
    using Chain = std::list<Entry>;

    Chain& bucket(std::uint32_t hash) { return m_table[hash % m_table.size()]; }

    Entry* find(std::int32_t key, std::uint32_t hash)
    {
        for (Entry& entry : bucket(hash)) {
            if (entry.key == key) return &entry;
        }
        return nullptr;
    }

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
