#include "orv/net/internal/EscapedText.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/text/charset/internal/Utf8Kernels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace orv::net::internal {

namespace {

namespace kernels = text::charset::internal;

constexpr std::size_t ASCII = 0x80; ///< how many bytes and units it has
constexpr std::size_t PARTS = 3;

/// For each part and byte the units by which escapes make it longer: 0 or 2.
constexpr auto longer = [] {
    std::array<std::array<std::uint8_t, 2 * ASCII>, PARTS> units{};
    constexpr std::string_view everywhere = "\"#%<>[]\\^`{}|\x7F";
    constexpr std::array<std::string_view, PARTS> own = {"/:;?@", "/;=?", "$&+,/:;=?@"};
    for (std::size_t part = 0; part < PARTS; ++part) {
        for (std::size_t byte = 0; byte <= 0x20; ++byte) units[part][byte] = 2;
        for (std::size_t byte = ASCII; byte < 2 * ASCII; ++byte) units[part][byte] = 2;
        for (const std::string_view bytes : {everywhere, own[part]}) {
            for (const char byte : bytes) units[part][static_cast<std::size_t>(byte)] = 2;
        }
    }
    return units;
}();

bool isAscii(std::u16string_view text)
{
    constexpr std::size_t step = 8;
    std::uint64_t all = 0;
    while (text.size() >= step) {
        std::uint64_t units[2];
        std::memcpy(units, text.data(), sizeof units);
        all |= units[0] | units[1];
        text.remove_prefix(step);
    }
    for (const char16_t unit : text) all |= unit;
    return (all & 0xFF80FF80FF80FF80) == 0;
}

/// The length of bytes when they are escaped; a byte is an unsigned char or a unit of ASCII.
template <class Byte>
std::size_t escapedLength(const Byte* bytes, std::size_t count, std::int32_t part)
{
    const auto& extra = longer[static_cast<std::size_t>(part)];
    std::size_t length = count;
    for (std::size_t i = 0; i < count; ++i) length += extra[bytes[i]];
    return length;
}

template <class Byte>
void writeEscaped(const Byte* bytes, std::size_t count, std::int32_t part, char16_t* out)
{
    const auto& extra = longer[static_cast<std::size_t>(part)];
    for (std::size_t i = 0; i < count; ++i) {
        const Byte byte = bytes[i];
        if (extra[byte] == 0) {
            *out++ = byte;
            continue;
        }
        const auto* const digits = byte < ASCII ? u"0123456789ABCDEF" : u"0123456789abcdef";
        *out++ = u'%';
        *out++ = digits[byte >> 4];
        *out++ = digits[byte & 0xF];
    }
}

const unsigned char* unsignedBytes(const Utf8Bytes& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

/// The value of each byte as a hexadecimal digit, NO_DIGIT for one that is none: of two values put
/// together, one of them makes more than a byte.
constexpr std::uint16_t NO_DIGIT = 0x100;
constexpr auto digitValues = [] {
    std::array<std::uint16_t, 2 * ASCII> values{};
    values.fill(NO_DIGIT);
    constexpr std::string_view lower = "0123456789abcdef";
    constexpr std::string_view upper = "0123456789ABCDEF";
    for (std::uint16_t value = 0; value < 16; ++value) {
        values[static_cast<unsigned char>(lower[value])] = value;
        values[static_cast<unsigned char>(upper[value])] = value;
    }
    return values;
}();

/// The byte that two digits stand for; more than a byte where one of them is none.
inline std::uint32_t valueOf(std::uint32_t high, std::uint32_t low)
{
    return std::uint32_t{digitValues[high]} << 4 | digitValues[low];
}

/// Whether the unit is a character by itself, and no mark of the byte order.
constexpr bool isPlain(char16_t unit)
{
    return (unit & 0xF800) != 0xD800 && unit != 0xFEFF;
}

/// What two bytes behind a "%" stand for.
signed char byteOf(unsigned char high, unsigned char low)
{
    std::uint32_t value = valueOf(high, low);
    if (value > 0xFF) {
        const char16_t digits[] = {high, low, 0};
        value = ORVStrToULW(digits, nullptr, 16);
    }
    return static_cast<signed char>(static_cast<std::uint8_t>(value));
}

/// Puts the bytes that those at `bytes` stand for in their place. Returns their number.
std::size_t resolveEscapes(signed char* bytes, std::size_t count)
{
    const signed char* in = bytes;
    const signed char* const end = in + count;
    signed char* out = bytes;
    while (in != end) {
        const signed char byte = *in++;
        if (byte != '%') {
            *out++ = byte;
            continue;
        }
        if (end - in < 2) throw Exception();
        *out++ = byteOf(static_cast<unsigned char>(in[0]), static_cast<unsigned char>(in[1]));
        in += 2;
    }
    return static_cast<std::size_t>(out - bytes);
}

constexpr std::ptrdiff_t ESCAPE = 3; ///< the units of one

/// The byte of the escape at `in`; more than a byte where there is none with two digits.
inline std::uint32_t escapedByte(const char16_t* in, const char16_t* end)
{
    if (end - in < ESCAPE || in[0] != u'%' || (in[1] | in[2]) > 0xFF) return NO_DIGIT;
    return valueOf(in[1], in[2]);
}

/// The character that begins with the byte `lead`, of two bytes or three, the others being the
/// escapes at `in`. Moves `in` behind them. 0 for any that needs a closer look.
char16_t escapedCharacter(std::uint32_t lead, const char16_t*& in, const char16_t* end)
{
    if (lead < 0xC2 || lead >= 0xF0) return 0;
    const bool isLong = lead >= 0xE0;
    std::uint32_t character = lead & (isLong ? 0xFu : 0x1Fu);
    for (int rest = isLong ? 2 : 1; rest > 0; --rest, in += ESCAPE) {
        const std::uint32_t byte = escapedByte(in, end);
        if (byte >> 6 != 2) return 0;
        character = character << 6 | (byte & 0x3F);
    }
    if (isLong && character < 0x800) return 0;
    const auto unit = static_cast<char16_t>(character);
    return isPlain(unit) ? unit : char16_t{0};
}

/// Writes the text that `text` stands for and returns its end; null where it has more to it than
/// characters of up to three bytes and whole escapes.
char16_t* unescapePlain(std::u16string_view text, char16_t* out)
{
    const char16_t* in = text.data();
    const char16_t* const end = in + text.size();
    while (in != end) {
        const char16_t unit = *in;
        if (unit != u'%') {
            if (unit >= 0xD800 && !isPlain(unit)) return nullptr;
            *out++ = unit;
            ++in;
            continue;
        }
        const std::uint32_t byte = escapedByte(in, end);
        if (byte > 0xFF) return nullptr;
        in += ESCAPE;
        if (byte < ASCII) {
            *out++ = static_cast<char16_t>(byte);
            continue;
        }
        const char16_t character = escapedCharacter(byte, in, end);
        if (character == 0) return nullptr;
        *out++ = character;
    }
    return out;
}

} // namespace

signed char* ByteRoom::make(std::size_t bytes)
{
    if (bytes <= sizeof m_short) return m_short;
    if (bytes > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    return m_long.reserve(static_cast<std::int32_t>(bytes));
}

Utf8Bytes::Utf8Bytes(std::u16string_view text)
{
    constexpr std::size_t mostBytesOfUnit = 3;
    const std::size_t room = text.size() * mostBytesOfUnit + 1;
    m_data = m_room.make(room);
    const auto* const end = text.data() + text.size();
    const auto stop = kernels::encodeUtf8(text.data(), end, m_data, m_data + room);
    m_length = static_cast<std::size_t>(stop.out - m_data);
    if (stop.in == end) return;

    // Half a surrogate pair: the String tells what becomes of it, and counts a terminator.
    const String whole(text.data(), static_cast<std::int32_t>(text.size()));
    const auto size = static_cast<std::int32_t>(room);
    m_length = static_cast<std::size_t>(whole.getBytes(m_data, size, u"UTF-8")) - 1;
}

EscapedText::EscapedText(std::u16string_view text, std::int32_t part, bool escape)
    : m_text(text), m_part(part), m_length(text.size())
{
    if (!escape) return;
    if (isAscii(text)) {
        m_length = escapedLength(text.data(), text.size(), part);
        return;
    }
    m_bytes.emplace(text);
    m_length = escapedLength(unsignedBytes(*m_bytes), m_bytes->length(), part);
}

void EscapedText::write(char16_t* out) const noexcept
{
    if (m_bytes) return writeEscaped(unsignedBytes(*m_bytes), m_bytes->length(), m_part, out);
    if (m_length != m_text.size()) {
        return writeEscaped(m_text.data(), m_text.size(), m_part, out);
    }
    std::copy(m_text.begin(), m_text.end(), out);
}

String unescaped(std::u16string_view text)
{
    constexpr std::size_t mostShort = 512;
    if (text.size() <= mostShort) {
        char16_t units[mostShort];
        const char16_t* const end = unescapePlain(text, units);
        if (end != nullptr) return String(units, static_cast<std::int32_t>(end - units));
    }
    Utf8Bytes bytes(text);
    const std::size_t length = resolveEscapes(bytes.data(), bytes.length());
    return String(bytes.data(), static_cast<std::int32_t>(length), u"UTF-8");
}

} // namespace orv::net::internal
