#include "components/textbundle/Catalogue.h"

#include "orv/Failure.h"
#include "orv/io/FileInputStream.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharsetExceptions.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>
#include <string>

namespace orv::components::textbundle {

using text::charset::ByteToCharConverter;

namespace {

constexpr std::string_view MARK = "\xEF\xBB\xBF";
constexpr std::u16string_view BLANKS = u" \t";
constexpr std::size_t npos = std::u16string_view::npos;
constexpr Result FILE_TOO_LARGE = makeResult(0x800700DFu);

std::string bytesOf(const String& path)
{
    constexpr std::int32_t step = 1 << 16;
    io::FileInputStream file(path);
    std::string bytes;
    for (std::size_t size = 0; size <= Catalogue::MOST_BYTES;) {
        bytes.resize(size + step);
        const std::int32_t got = file.read(bytes.data() + size, step);
        if (got < 1) {
            bytes.resize(size);
            return bytes;
        }
        size += static_cast<std::size_t>(got);
    }
    throwResult(FILE_TOO_LARGE);
}

/// Compares as bytes, which the library for text of 16 bits does not.
bool isSame(std::u16string_view a, std::u16string_view b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

/// Whether the unit at `place` stands behind a backslash that is none itself.
bool isEscaped(std::u16string_view text, std::size_t place)
{
    std::size_t first = place;
    while (first > 0 && text[first - 1] == u'\\') --first;
    return (place - first) % 2 == 1;
}

/// Without blanks at its ends; one that is escaped stays.
std::u16string_view trimmed(std::u16string_view text)
{
    const std::size_t begin = text.find_first_not_of(BLANKS);
    if (begin == npos) return {};
    text.remove_prefix(begin);
    const std::size_t end = text.find_last_not_of(BLANKS) + 1;
    return text.substr(0, end + (end < text.size() && isEscaped(text, end) ? 1 : 0));
}

/// The place of the "=" between key and text.
std::size_t findDivider(std::u16string_view line)
{
    std::size_t place = line.find(u'=');
    while (place != npos && isEscaped(line, place)) place = line.find(u'=', place + 1);
    return place;
}

/// What a backslash and this unit stand for.
std::optional<char16_t> meaningOf(char16_t unit)
{
    switch (unit) {
    case u'n': return u'\n';
    case u'r': return u'\r';
    case u't': return u'\t';
    case u' ':
    case u'\\':
    case u'#':
    case u'=': return unit;
    default: return std::nullopt;
    }
}

} // namespace

/// Takes the bytes of a catalogue apart, line by line.
class Catalogue::Parser {
public:
    explicit Parser(Catalogue& catalogue) : m_catalogue(catalogue), m_end(&catalogue.m_units[0]) {}

    void run(std::string_view bytes, const TellBroken& tell)
    {
        if (bytes.starts_with(MARK)) bytes.remove_prefix(MARK.size());
        for (std::int32_t number = 1; !bytes.empty(); ++number) {
            const std::size_t length = std::min(bytes.find('\n'), bytes.size());
            const char16_t* const reason = takeLine(bytes.substr(0, length));
            if (reason != nullptr && tell) tell(number, reason);
            bytes.remove_prefix(std::min(length + 1, bytes.size()));
        }
    }

private:
    /// Null, or what is wrong with the line.
    const char16_t* takeLine(std::string_view bytes)
    {
        if (bytes.ends_with('\r')) bytes.remove_suffix(1);
        std::int32_t length = 0;
        if (!decode(bytes, &length)) return u"it is no UTF-8";
        char16_t* const units = m_end;
        const auto line = trimmed({units, static_cast<std::size_t>(length)});
        if (line.empty() || line.front() == u'#') return nullptr;
        if (line.find(u'\0') != npos) return u"it holds a zero character";

        const std::size_t divider = findDivider(line);
        if (divider == npos) return u"there is no \"=\" behind a key";
        const auto key = unescaped(trimmed(line.substr(0, divider)));
        const auto text = unescaped(trimmed(line.substr(divider + 1)));
        if (!key || !text) return u"a backslash stands before a character that takes none";
        if (key->empty()) return u"there is no key before the \"=\"";
        if (!m_catalogue.add({*key, *text})) return u"its key stands in an earlier line";
        m_end += length;
        return nullptr;
    }

    /// Decodes `bytes` to m_end. The decoder puts U+FFFD for what is malformed, so there must be as
    /// many as the bytes themselves hold.
    bool decode(std::string_view bytes, std::int32_t* length)
    {
        constexpr std::string_view substitute = "\xEF\xBF\xBD";
        const auto size = static_cast<std::int32_t>(bytes.size());
        std::int32_t from = 0;
        const auto* const source = reinterpret_cast<const signed char*>(bytes.data());
        try {
            m_decoder->convert(source, &from, size, m_end, length, size + 1);
        } catch (const text::charset::InvalidCharacterException&) {
            return false; // half of a surrogate pair
        }
        if (from != size) return false;

        auto substitutes = std::count(m_end, m_end + *length, u'\uFFFD');
        for (std::size_t place = 0; substitutes > 0; --substitutes) {
            place = bytes.find(substitute, place);
            if (place == std::string_view::npos) return false;
            place += substitute.size();
        }
        return true;
    }

    /// Puts the characters that escapes stand for in their place, which never takes more room.
    std::optional<std::u16string_view> unescaped(std::u16string_view text)
    {
        if (text.find(u'\\') == npos) return text;
        char16_t* const begin = m_end + (text.data() - m_end);
        char16_t* end = begin;
        for (std::size_t i = 0; i < text.size(); ++i) {
            char16_t unit = text[i];
            if (unit == u'\\') {
                const auto meaning =
                    ++i < text.size() ? meaningOf(text[i]) : std::optional<char16_t>();
                if (!meaning) return std::nullopt;
                unit = *meaning;
            }
            *end++ = unit;
        }
        return std::u16string_view(begin, static_cast<std::size_t>(end - begin));
    }

    Catalogue& m_catalogue;
    char16_t* m_end; ///< behind the last unit of an entry
    Reference<ByteToCharConverter> m_decoder{ByteToCharConverter::getConverter(u"UTF-8")};
};

Reference<const Catalogue> Catalogue::read(const String& path, const TellBroken& tell)
{
    return makeReference<const Catalogue>(bytesOf(path), tell);
}

Catalogue::Catalogue(std::string_view bytes, const TellBroken& tell)
    : m_units(std::make_unique_for_overwrite<char16_t[]>(bytes.size() + 1)), m_slots(64)
{
    Parser(*this).run(bytes, tell);
}

Catalogue::~Catalogue() noexcept(false) = default;

/// The place of `key`, or the free one where it belongs.
std::size_t Catalogue::slotOf(std::u16string_view key) const noexcept
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = std::hash<std::u16string_view>()(key) & mask;
    while (m_slots[slot] != 0 && !isSame(m_entries[m_slots[slot] - 1].key, key)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

const Catalogue::Entry* Catalogue::find(std::u16string_view key) const noexcept
{
    const std::uint32_t number = m_slots[slotOf(key)];
    return number == 0 ? nullptr : &m_entries[number - 1];
}

/// False where the key is there already.
bool Catalogue::add(const Entry& entry)
{
    const std::size_t slot = slotOf(entry.key);
    if (m_slots[slot] != 0) return false;
    m_entries.push_back(entry);
    m_slots[slot] = static_cast<std::uint32_t>(m_entries.size());
    if (m_entries.size() * 2 > m_slots.size()) growSlots();
    return true;
}

void Catalogue::growSlots()
{
    m_slots.assign(m_slots.size() * 2, 0);
    std::uint32_t number = 0;
    for (const Entry& entry : m_entries) m_slots[slotOf(entry.key)] = ++number;
}

} // namespace orv::components::textbundle
