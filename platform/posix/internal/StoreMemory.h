#pragma once

#include "platform/posix/internal/StoreText.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

struct sqlite3;

namespace orvcore {

/// A value as it stands in the store.
struct StoredValue {
    bool isThere = false;
    std::uint32_t type = 0;
    std::string_view bytes;
};

/// What one connection has read since the store last changed, so that reading it again takes no
/// lock on the file and no statement.
///
/// Every process that changes the store counts that in the index of the log, which all of them have
/// in memory (https://www.sqlite.org/walformat.html, "The WAL-Index Header"): while the header is
/// as it was, so are the values. It is noted before a value is read, hence a change in between is
/// seen at the next look.
class StoreMemory {
public:
    StoreMemory() noexcept = default;
    ~StoreMemory();
    StoreMemory(const StoreMemory&) = delete;
    StoreMemory& operator=(const StoreMemory&) = delete;

    /// Begins to look at the changes of an open database. Where it keeps no such log nothing is
    /// remembered.
    void watch(sqlite3* database) noexcept;

    /// Whether the value of that name in `key` is known; `out` then holds good until the next call
    /// here.
    bool find(std::string_view key, std::string_view name, StoredValue* out) noexcept;

    /// Keeps what was read after find() did not know it. Large values are not kept.
    void add(std::string_view key, std::string_view name, const StoredValue& value) noexcept;

    /// Another number whenever what was known has been forgotten.
    std::uint32_t age() const noexcept { return m_age; }

private:
    struct Slot {
        std::uint32_t age = 0; ///< the age in which it was filled
        std::uint32_t offset = 0;
    };
    struct Head {
        std::uint32_t keySize;
        std::uint32_t nameSize;
        std::uint32_t valueSize;
        std::uint32_t type;
        bool isThere;
    };

    static constexpr std::size_t slotCount = 4096;
    static constexpr std::size_t mostBytes = 512 * 1024;
    static constexpr std::size_t largestValue = 4096;
    static constexpr std::size_t headerWords = 12;

    static std::size_t slotOf(std::string_view key, std::string_view name) noexcept;
    bool isUnchanged() noexcept;
    void forget() noexcept;

    const volatile std::uint32_t* m_index = nullptr; ///< two headers, one behind the other
    std::uint32_t m_header[headerWords] = {};
    Slot* m_slots = nullptr;
    std::uint32_t m_age = 1;
    StoreText m_entries; ///< for each a head, then the bytes of key, name and value
};

} // namespace orvcore
