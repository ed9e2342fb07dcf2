#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "platform/orvcore.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orv::log::internal {

/// The fields that a Logger knows, in the order in which it sets them.
enum class Standard : std::uint8_t { Level, Text, Sequence, Thread, TimeStamp, Name };

inline constexpr std::array<std::u16string_view, 6> STANDARD_NAMES = {
    u"level", u"text", u"sequence", u"thread", u"timestamp", u"name"};

constexpr std::u16string_view nameOf(Standard field) noexcept
{
    return STANDARD_NAMES[static_cast<std::size_t>(field)];
}

/// The standard fields in the order in which the set of their names gives them: by the bucket of
/// 101 that the hash of the name falls into, the highest first. No two of them share one.
inline constexpr auto STANDARD_ORDER = [] {
    const auto bucketOf = [](Standard field) {
        std::uint32_t hash = 0;
        for (const char16_t unit : nameOf(field)) hash = hash * 37 + unit;
        return hash % 101;
    };
    std::array<Standard, STANDARD_NAMES.size()> order{};
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<Standard>(i);
    std::sort(order.begin(), order.end(),
              [&](Standard a, Standard b) { return bucketOf(a) > bucketOf(b); });
    return order;
}();

/// Values of standard fields as they come, before anybody wants objects.
class StandardFields {
public:
    void setLevel(std::int32_t level) noexcept { m_level = set(Standard::Level, level); }
    void setText(std::u16string_view text) noexcept { m_text = set(Standard::Text, text); }
    void setSequence(std::int32_t number) noexcept { m_sequence = set(Standard::Sequence, number); }
    void setThread(std::uint32_t id) noexcept { m_thread = set(Standard::Thread, id); }
    void setTime(const STRUCT_ORV_TIME& time) noexcept { m_time = set(Standard::TimeStamp, time); }
    void setName(std::u16string_view name) noexcept { m_name = set(Standard::Name, name); }

    bool has(Standard field) const noexcept { return (m_present & bitOf(field)) != 0; }

    std::int32_t level() const noexcept { return m_level; }
    std::u16string_view text() const noexcept { return m_text; }
    std::int32_t sequence() const noexcept { return m_sequence; }
    std::uint32_t thread() const noexcept { return m_thread; }
    const STRUCT_ORV_TIME& time() const noexcept { return m_time; }
    std::u16string_view name() const noexcept { return m_name; }

    /// Units of text and name together.
    std::size_t unitCount() const noexcept { return m_text.size() + m_name.size(); }

    /// Copies text and name to `place`, which has room for them, and refers to the copies.
    void moveTexts(char16_t* place) noexcept
    {
        m_text = copied(m_text, place);
        m_name = copied(m_name, place + m_text.size());
    }

    /// The value of a field that is there, as an object.
    Reference<Object> toObject(Standard field) const;

private:
    static constexpr unsigned bitOf(Standard field) noexcept
    {
        return 1u << static_cast<unsigned>(field);
    }

    template <class Value>
    const Value& set(Standard field, const Value& value) noexcept
    {
        m_present = static_cast<std::uint8_t>(m_present | bitOf(field));
        return value;
    }

    static std::u16string_view copied(std::u16string_view text, char16_t* place) noexcept
    {
        std::copy(text.begin(), text.end(), place);
        return {place, text.size()};
    }

    std::uint8_t m_present = 0;
    std::int32_t m_level = 0;
    std::int32_t m_sequence = 0;
    std::uint32_t m_thread = 0;
    STRUCT_ORV_TIME m_time{};
    std::u16string_view m_text;
    std::u16string_view m_name;
};

} // namespace orv::log::internal
