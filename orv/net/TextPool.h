#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace orv::net {

namespace internal {
class EscapedText;
}

/// Several short texts in one block of memory: what URI keeps its components in.
///
/// A text is known by its place. Texts that were replaced leave gaps, which go when room is made.
/// Bounds: 2^31 - 1 units. Threads: one at a time.
class TextPool {
public:
    using View = std::u16string_view;

    /// Where a text lies.
    struct Place {
        std::int32_t start = 0;
        std::int32_t length = 0;
    };

    /// The text at `place`, valid until something is added.
    View get(Place place) const noexcept
    {
        return {m_units.data() + place.start, static_cast<std::size_t>(place.length)};
    }

    /// Whether `text` lies in this block, and then where.
    bool holds(View text) const noexcept
    {
        const std::less_equal<const char16_t*> notBehind;
        return notBehind(m_units.data(), text.data()) &&
               notBehind(text.data() + text.size(), m_units.data() + m_units.size());
    }
    Place placeOf(View text) const noexcept
    {
        return {static_cast<std::int32_t>(text.data() - m_units.data()),
                static_cast<std::int32_t>(text.size())};
    }

    /// Makes room for `units` more, moving the texts at all places for which `forEachPlace` calls
    /// its argument with a Place&. Without memory it throws and changes nothing.
    template <class ForEachPlace>
    void makeRoom(std::size_t units, ForEachPlace forEachPlace)
    {
        if (units <= m_units.capacity() - m_units.size()) return;
        if (m_units.empty()) {
            reserveFirst(units);
            return;
        }
        std::size_t used = 0;
        forEachPlace([&](const Place& place) { used += static_cast<std::size_t>(place.length); });
        std::u16string moved = emptyBlock(used, units);
        forEachPlace([&](Place& place) {
            const View text = get(place);
            place.start = static_cast<std::int32_t>(moved.size());
            moved.append(text);
        });
        m_units.swap(moved);
    }

    /// Adds a text for which there is room.
    Place add(View text);
    Place add(const internal::EscapedText& text);

    /// Takes back the text added last.
    void takeBack(Place last) { m_units.resize(static_cast<std::size_t>(last.start)); }

    /// Removes all texts and keeps the block; places from before are not to be used any more.
    void clear() noexcept { m_units.clear(); }

private:
    static void requireBounds(std::size_t used, std::size_t more);
    void reserveFirst(std::size_t units);
    static std::u16string emptyBlock(std::size_t used, std::size_t more);

    std::u16string m_units;
};

} // namespace orv::net
