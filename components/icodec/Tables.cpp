#include "components/icodec/Tables.h"

#include "components/icodec/CharacterSource.h"

#include <algorithm>
#include <bitset>

namespace orv::components::icodec {

namespace {

constexpr std::size_t TABLE = 256;
constexpr char16_t NO_TABLE = 0xFFFF;

/// Puts the tables of steps together: first what the source says of each sequence, then how much
/// is consumed of those without a character, which depends on what can follow a lead byte at all.
class StepsBuilder {
public:
    explicit StepsBuilder(CharacterSource& source) : m_source(source) {}

    std::vector<Step> build()
    {
        addTable(0);
        findTrails();
        for (std::size_t table = 0; table < m_depths.size(); ++table) {
            if (m_depths[table] == 1) settleSecondBytes(table);
            if (m_depths[table] == 2) settleLastBytes(table);
        }
        return std::move(m_steps);
    }

private:
    static bool isBroken(Step step) noexcept
    {
        return step.unit == Step::NONE && step.consumed != 0;
    }

    Step& at(std::size_t table, std::size_t byte) { return m_steps[table * TABLE + byte]; }

    char16_t newTable(std::uint8_t depth)
    {
        m_steps.resize(m_steps.size() + TABLE, {Step::NONE, std::max<std::uint8_t>(depth, 1)});
        m_depths.push_back(depth);
        return static_cast<char16_t>(m_depths.size() - 1);
    }

    /// The table of the byte behind the first `depth` of m_bytes, with all tables behind it.
    char16_t addTable(std::uint8_t depth)
    {
        const char16_t table = newTable(depth);
        for (std::size_t byte = 0; byte < TABLE; ++byte) {
            m_bytes[depth] = static_cast<signed char>(byte);
            Step step = m_source.decode(m_bytes.data(), static_cast<std::uint8_t>(depth + 1));
            if (isBroken(step)) continue;
            if (step.consumed == 0) {
                if (depth + 1u == m_bytes.size()) continue; // none of the encodings has longer ones
                step.unit = addTable(static_cast<std::uint8_t>(depth + 1));
            }
            at(table, byte) = step;
        }
        return table;
    }

    /// What ends a sequence of two behind some lead byte can follow all of them.
    void findTrails()
    {
        for (std::size_t table = 0; table < m_depths.size(); ++table) {
            if (m_depths[table] != 1) continue;
            for (std::size_t byte = 0; byte < TABLE; ++byte) {
                if (!isBroken(at(table, byte))) m_trails.set(byte);
            }
        }
    }

    bool isBrokenTrail(std::size_t table, std::size_t byte)
    {
        return m_trails.test(byte) && byte >= 0x80 && isBroken(at(table, byte));
    }

    void settleSecondBytes(std::size_t table)
    {
        const auto begin = m_steps.begin() + static_cast<std::ptrdiff_t>(table * TABLE);
        const bool ofThree =
            std::any_of(begin, begin + TABLE, [](Step step) { return step.consumed == 0; });
        if (ofThree && m_noCharacters == NO_TABLE) m_noCharacters = newTable(2);
        for (std::size_t byte = 0; byte < TABLE; ++byte) {
            if (!isBrokenTrail(table, byte)) continue;
            at(table, byte) = ofThree ? Step{m_noCharacters, 0} : Step{Step::NONE, 2};
        }
    }

    void settleLastBytes(std::size_t table)
    {
        for (std::size_t byte = 0; byte < TABLE; ++byte) {
            if (isBrokenTrail(table, byte)) at(table, byte).consumed = 3;
        }
    }

    CharacterSource& m_source;
    std::vector<Step> m_steps;
    std::vector<std::uint8_t> m_depths; ///< bytes before that of each table
    std::array<signed char, 3> m_bytes{};
    std::bitset<TABLE> m_trails;
    char16_t m_noCharacters = NO_TABLE; ///< the table of a third byte where all are broken
};

} // namespace

Tables::Tables(const CodePage& page)
{
    const std::unique_ptr<CharacterSource> source = openSource(page);
    m_steps = StepsBuilder(*source).build();
    addSequences(*source);
    for (const Step step : m_steps) m_maxBytes = std::max<std::int32_t>(m_maxBytes, step.consumed);
}

void Tables::addSequences(CharacterSource& source)
{
    m_sequences.resize(SIZE);
    for (char32_t unit = 0; unit < 0x10000; ++unit) {
        const Sequence sequence = source.encode(static_cast<char16_t>(unit));
        if (sequence.length == 0) continue;
        std::uint32_t& page = m_pages[unit >> 8];
        if (page == 0) {
            page = static_cast<std::uint32_t>(m_sequences.size());
            m_sequences.resize(m_sequences.size() + SIZE);
        }
        m_sequences[page + (unit & 0xFF)] = sequence;
        m_maxBytes = std::max<std::int32_t>(m_maxBytes, sequence.length);
    }
}

} // namespace orv::components::icodec
