#pragma once

#include "orv/OwningArray.h"
#include "orv/String.h"

#include <cstring>
#include <string_view>

namespace orv::log::internal {

/// Puts a text together, without an allocation as long as it stays below 600 units.
class UnitBuffer {
public:
    UnitBuffer() noexcept = default;
    UnitBuffer(const UnitBuffer&) = delete;
    UnitBuffer& operator=(const UnitBuffer&) = delete;

    void append(std::u16string_view text)
    {
        if (text.size() > m_room) grow(text.size());
        std::memcpy(m_end, text.data(), text.size() * sizeof(char16_t));
        m_end += text.size();
        m_room -= text.size();
    }

    const char16_t* units() const noexcept { return m_begin; }
    std::int32_t length() const noexcept { return static_cast<std::int32_t>(m_end - m_begin); }
    String toString() const { return String(m_begin, length()); }

private:
    static constexpr std::size_t SHORT_TEXT = 600;

    void grow(std::size_t more);

    char16_t m_short[SHORT_TEXT];
    OwningArray<char16_t> m_long;
    char16_t* m_begin = m_short;
    char16_t* m_end = m_short;
    std::size_t m_room = SHORT_TEXT;
};

} // namespace orv::log::internal
