#pragma once

#include "components/icodec/CodePages.h"
#include "components/icodec/Sequence.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orv::components::icodec {

class CharacterSource;

/// Both directions of an encoding whose characters are single units, filled once.
///
/// A sequence without a character is consumed as far as it is the beginning of one: a lead byte
/// alone before what cannot follow it, all of a sequence that merely stands for nothing. A byte of
/// ASCII is left out of it even where it could follow, so that the text behind a broken character
/// is found again.
///
/// Threads: any, once constructed.
class Tables {
public:
    /// Throws ResultException: E_UNKNOWN_ENCODING where iconv does not know the encoding.
    explicit Tables(const CodePage& page);

    /// The sequence that begins at `in`: how many bytes it takes, 0 where `end` cuts it off, and
    /// its character. Moves `in` past what was looked at, which is all of it where it has a
    /// character.
    Step decode(const signed char*& in, const signed char* end) const noexcept
    {
        for (std::size_t table = 0; in < end;) {
            const Step step = m_steps[table * SIZE + static_cast<unsigned char>(*in++)];
            if (step.consumed != 0) return step;
            table = step.unit;
        }
        return {};
    }

    /// The bytes of a character.
    Sequence encode(char16_t unit) const noexcept
    {
        return m_sequences[m_pages[unit >> 8] + (unit & 0xFFu)];
    }

    /// The most bytes that one character takes in either direction.
    std::int32_t maxBytes() const noexcept { return m_maxBytes; }

private:
    static constexpr std::size_t SIZE = 256;

    void addSequences(CharacterSource& source);

    std::vector<Step> m_steps;                 ///< tables of 256
    std::vector<Sequence> m_sequences;         ///< pages of 256, the first one empty
    std::array<std::uint32_t, SIZE> m_pages{}; ///< where the page of a unit's high byte begins
    std::int32_t m_maxBytes = 1;
};

} // namespace orv::components::icodec
