#pragma once

#include "platform/orvcore.h"

#include <cstddef>
#include <string_view>

/// \file
/// Names in the configuration store. Each unit stands by itself, in one to three bytes as UTF-8 has
/// them: so the bytes sort as the units do, and a surrogate without its partner is kept.

namespace orvcore {

/// Bytes that grow. After a failure to find memory they stay as they are, and failed() says so.
class StoreText {
public:
    StoreText() noexcept = default;
    ~StoreText();
    StoreText(const StoreText&) = delete;
    StoreText& operator=(const StoreText&) = delete;

    void clear() noexcept { m_size = 0; }
    void append(const void* bytes, std::size_t count) noexcept;
    void append(std::string_view text) noexcept { append(text.data(), text.size()); }
    void appendUnits(std::u16string_view units) noexcept;
    /// The units in the case by which names are found.
    void appendFolded(std::u16string_view units) noexcept;

    std::string_view view() const noexcept { return {m_bytes, m_size}; }
    bool failed() const noexcept { return m_failed; }

private:
    bool reserve(std::size_t more) noexcept;
    void appendUnit(char16_t unit) noexcept;

    char m_short[512];
    char* m_bytes = m_short;
    std::size_t m_size = 0;
    std::size_t m_capacity = sizeof m_short;
    bool m_failed = false;
};

/// The number of units that `text` makes, which `out` receives, if it is not null.
std::size_t widenStoreText(std::string_view text, char16_t* out) noexcept;

/// The units of a name that an enumeration can tell, without the terminator.
inline constexpr std::size_t longestStoreName = 254;

/// Takes the next part off a path that backslashes divide; false at its end. Empty parts count for
/// nothing.
bool nextPart(const char16_t** path, std::u16string_view* part) noexcept;

/// The place of a key: a digit for the root, then each part behind a backslash, in folded case.
class StoreKey {
public:
    /// E_POINTER, E_INVALIDARG for a root that is none, 0x800700CE for a part that is too long.
    ORVResult assign(ENUM_ORV_HKEY root, const char16_t* path) noexcept;

    bool isRoot() const noexcept { return m_text.view().size() == rootSize; }
    std::string_view text() const noexcept { return m_text.view(); }
    std::string_view parent() const noexcept { return text().substr(0, m_lastPart); }
    std::string_view name() const noexcept { return text().substr(m_lastPart + 1); }

    static constexpr std::size_t rootSize = 1;

private:
    StoreText m_text;
    std::size_t m_lastPart = 0; ///< where the backslash before it stands
};

} // namespace orvcore
