#include "orv/util/IniFile.h"

#include "orv/Failure.h"
#include "platform/files.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

namespace orv::util {

namespace {

constexpr std::int32_t LONGEST_LINE = 510;
constexpr std::int32_t SET_ROOM = 260; ///< bytes of a name with its terminator
constexpr std::int32_t KEY_ROOM = 255; ///< and of a key or a value
constexpr std::int32_t FILE_ROOM = 260;

constexpr std::string_view MARK = "\xEF\xBB\xBF";
constexpr std::u16string_view BLANKS = u" \t\r\n";

/// Whether the name of a file, in bytes, is within the bound that names of such files have.
bool isWithinBound(const String& name)
{
    constexpr std::int32_t mostBytes = 4; // of a unit in any encoding
    if (name.getLength() < FILE_ROOM / mostBytes) return true;
    char bytes[FILE_ROOM + mostBytes];
    return ORVUnicodeToAnsi(bytes, name.getData(), sizeof bytes) <= FILE_ROOM;
}

class OpenFile {
public:
    OpenFile(const String& name, std::uint32_t flags)
    {
        constexpr std::uint32_t permissions = 0666;
        if (isWithinBound(name)) ORVFileOpen(name.getData(), flags, permissions, &m_handle);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (isOpen()) ORVFileClose(m_handle);
    }

    bool isOpen() const noexcept { return m_handle != ORV_NO_HANDLE; }
    ORVHandle handle() const noexcept { return m_handle; }

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
};

/// Gives the bytes of a file line by line, with their line feeds, longer lines in pieces.
class Lines {
public:
    explicit Lines(ORVHandle file) : m_file(file) {}

    /// False at the end.
    bool next(std::string_view* line)
    {
        if (m_end - m_position < LONGEST_LINE) refill();
        const std::int32_t most = std::min(m_end - m_position, LONGEST_LINE);
        if (most == 0) return false;
        const char* const begin = &m_bytes[0] + m_position;
        const void* const feed = std::memchr(begin, '\n', static_cast<std::size_t>(most));
        const std::ptrdiff_t length =
            feed != nullptr ? static_cast<const char*>(feed) - begin + 1 : most;
        *line = {begin, static_cast<std::size_t>(length)};
        m_position += static_cast<std::int32_t>(length);
        return true;
    }

private:
    void refill()
    {
        std::memmove(&m_bytes[0], &m_bytes[0] + m_position,
                     static_cast<std::size_t>(m_end - m_position));
        m_end -= m_position;
        m_position = 0;
        while (m_end < LONGEST_LINE && !m_atEnd) {
            std::int32_t got = 0;
            throwIfFailed(orvcore::readFile(m_file, &m_bytes[0] + m_end, SIZE - m_end, &got));
            m_end += got;
            m_atEnd = got == 0;
        }
    }

    static constexpr std::int32_t SIZE = 1 << 15;

    ORVHandle m_file;
    std::array<char, SIZE> m_bytes;
    std::int32_t m_position = 0;
    std::int32_t m_end = 0;
    bool m_atEnd = false;
};

bool isSkipped(char first)
{
    return std::string_view("#;: \t\r\n\v\f").find(first) != std::string_view::npos;
}

/// Whether bytes below 0x80 are their characters in the default encoding.
bool widensAscii()
{
    char16_t name[40];
    if (failed(ORVGetDefaultCharEncoding(name, 40))) return false;
    const std::u16string_view encoding(name);
    return encoding == u"UTF-8" || encoding == u"CP1252" || encoding == u"ASCII";
}

std::u16string_view trimmed(std::u16string_view text)
{
    const std::size_t begin = text.find_first_not_of(BLANKS);
    if (begin == std::u16string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(BLANKS) - begin + 1);
}

String textOf(std::u16string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

} // namespace

/// Makes sets of lines.
class IniFile::Reader {
public:
    /// Takes one line; false where the reading ends with it.
    bool take(std::string_view line)
    {
        if (line.substr(0, MARK.size()) == MARK) {
            line.remove_prefix(MARK.size());
            m_encoding = u"UTF-8";
            m_widens = true;
        }
        line = line.substr(0, line.find('\0'));
        if (line.empty() || isSkipped(line.front())) return true;
        return line.front() == '[' ? openSet(decoded(line)) : addKey(decoded(line));
    }

    Sets finish()
    {
        if (!m_name.empty()) closeSet();
        return std::move(m_sets);
    }

private:
    /// Valid until the next call.
    std::u16string_view decoded(std::string_view line)
    {
        if (m_widens) {
            unsigned char all = 0;
            for (std::size_t i = 0; i < line.size(); ++i) {
                m_units[i] = static_cast<unsigned char>(line[i]);
                all |= static_cast<unsigned char>(line[i]);
            }
            if (all < 0x80) return {m_units, line.size()};
        }
        m_text.setTo(line.data(), static_cast<std::int32_t>(line.size()), m_encoding);
        return NameOrder::view(m_text);
    }

    bool openSet(std::u16string_view line)
    {
        if (m_inSet) closeSet();
        m_inSet = true;
        m_keys.clear();
        const std::size_t end = line.rfind(u']');
        if (end == std::u16string_view::npos) return false;
        m_name = line.substr(1, end - 1);
        return true;
    }

    void closeSet()
    {
        const auto place = m_sets.lower_bound(std::u16string_view(m_name));
        if (place != m_sets.end() && !m_sets.key_comp()(m_name, place->first)) {
            place->second.swap(m_keys);
            useAsModel(place->second);
        } else {
            useAsModel(m_sets.emplace_hint(place, textOf(m_name), std::move(m_keys))->second);
        }
    }

    void useAsModel(const Keys& keys)
    {
        m_model = keys.begin();
        m_modelEnd = keys.end();
    }

    /// The name of a key. Sets tend to have the same keys in the same order, and then share them.
    String keyText(std::u16string_view key)
    {
        if (m_model == m_modelEnd || NameOrder::view(m_model->first) != key) return textOf(key);
        return (m_model++)->first;
    }

    /// Where `key` is or belongs, which in a sorted file is the end.
    Keys::iterator placeOf(std::u16string_view key)
    {
        const bool isLast =
            m_keys.empty() || m_keys.key_comp()(std::prev(m_keys.end())->first, key);
        return isLast ? m_keys.end() : m_keys.lower_bound(key);
    }

    bool addKey(std::u16string_view line)
    {
        line = line.substr(0, std::max<std::size_t>(line.size(), 1) - 1); // the line feed
        const std::size_t equals = line.find(u'=');
        if (equals == std::u16string_view::npos) return false;
        const std::u16string_view key = trimmed(line.substr(0, equals));
        const std::u16string_view value = trimmed(line.substr(equals + 1));
        const auto place = placeOf(key);
        if (place != m_keys.end() && !m_keys.key_comp()(key, place->first)) {
            place->second = textOf(value);
        } else {
            m_keys.emplace_hint(place, keyText(key), textOf(value));
        }
        return true;
    }

    Sets m_sets;
    Keys m_keys;                    ///< of the set that is open
    Keys::const_iterator m_model{}; ///< the next key of the set before it
    Keys::const_iterator m_modelEnd{};
    std::u16string m_name; ///< its name
    bool m_inSet = false;
    const char16_t* m_encoding = nullptr;
    bool m_widens = widensAscii();
    char16_t m_units[LONGEST_LINE];
    String m_text;
};

/// The bytes of a file that is to be written.
class IniFile::Text {
public:
    explicit Text(const Sets& sets)
    {
        for (const auto& [name, keys] : sets) {
            m_bytes += '[';
            put(name, SET_ROOM);
            m_bytes += "]\n";
            for (const auto& [key, value] : keys) {
                put(key, KEY_ROOM);
                m_bytes += '=';
                put(value, KEY_ROOM);
                m_bytes += '\n';
            }
            m_bytes += '\n';
        }
    }

    /// Writes all by one call. A failure leaves the file with what it took.
    void writeTo(ORVHandle file) const noexcept
    {
        constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
        std::int32_t written = 0;
        for (std::size_t at = 0; at < m_bytes.size(); at += most) {
            const std::size_t size = std::min(m_bytes.size() - at, most);
            const Result result = orvcore::writeFile(file, m_bytes.data() + at,
                                                     static_cast<std::int32_t>(size), &written);
            if (failed(result)) return;
        }
    }

private:
    /// Adds what fits of `text` into `room` bytes with a terminator.
    void put(const String& text, std::int32_t room)
    {
        char bytes[SET_ROOM];
        const std::u16string_view units = NameOrder::view(text).substr(0, room - 1);
        char16_t highest = 0; // of the units less one, so that a zero unit is high too
        for (std::size_t i = 0; i < units.size(); ++i) {
            bytes[i] = static_cast<char>(units[i]);
            highest = std::max(highest, static_cast<char16_t>(units[i] - 1));
        }
        if (highest < 0x7F) {
            m_bytes.append(bytes, units.size());
        } else {
            const std::int32_t size = ORVUnicodeToAnsi(bytes, text.getData(), room);
            m_bytes.append(bytes, static_cast<std::size_t>(std::max(size, 1) - 1));
        }
    }

    std::string m_bytes;
};

/// Reads the file; -1 where it cannot be opened, which leaves nothing.
std::int32_t IniFile::load()
{
    constexpr std::uint32_t forReading = 0x80000000;
    const OpenFile file(m_fileName, forReading);
    if (!file.isOpen()) {
        dropIndex();
        m_sets.clear();
        return -1;
    }
    Lines lines(file.handle());
    Reader reader;
    std::string_view line;
    while (lines.next(&line) && reader.take(line)) {
    }
    Sets sets = reader.finish();
    dropIndex();
    m_sets.swap(sets);
    return 0;
}

/// Writes the file named, or the object's own for null; 1 where it cannot be opened.
std::int32_t IniFile::WriteToFile(const char16_t* fileName)
{
    constexpr std::uint32_t forWritingAnew = 0x40000300;
    const Text text(m_sets);
    const OpenFile file(fileName != nullptr ? String(fileName) : m_fileName, forWritingAnew);
    if (!file.isOpen()) return 1;
    text.writeTo(file.handle());
    std::int64_t modified = 0;
    if (!failed(orvcore::fileTime(file.handle(), &modified))) m_lastModified = modified;
    return 0;
}

/// Reads the file again where it is newer than what is known. A file that is not there changes
/// nothing.
void IniFile::checkAndUpdate()
{
    std::int64_t modified = 0;
    if (!isWithinBound(m_fileName)) return;
    if (failed(orvcore::fileTime(m_fileName.getData(), &modified))) return;
    if (modified > m_lastModified) load();
    m_lastModified = modified;
}

} // namespace orv::util
