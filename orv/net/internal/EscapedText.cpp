#include "orv/net/internal/EscapedText.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/text/charset/internal/Utf8Kernels.h"

#include <algorithm>
#include <array>
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
    char16_t all = 0;
    for (const char16_t unit : text) all = static_cast<char16_t>(all | unit);
    return all < ASCII;
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

/// The value of a hexadecimal digit, or 16.
constexpr unsigned digitOf(unsigned char byte)
{
    if (byte >= '0' && byte <= '9') return byte - unsigned{'0'};
    const unsigned letter = byte | 0x20u;
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : 16;
}

/// What two bytes behind a "%" stand for.
signed char byteOf(unsigned char high, unsigned char low)
{
    unsigned value = digitOf(high) << 4 | digitOf(low);
    if (digitOf(high) > 15 || digitOf(low) > 15) {
        const char16_t digits[] = {high, low, 0};
        value = ORVStrToULW(digits, nullptr, 16);
    }
    return static_cast<signed char>(static_cast<std::uint8_t>(value));
}

/// Writes the bytes that `in`, bytes or units of ASCII, stands for, which may be where `in` is.
/// Returns their number.
template <class Byte>
std::size_t resolveEscapes(const Byte* in, std::size_t count, signed char* out)
{
    signed char* const start = out;
    const Byte* const end = in + count;
    for (; in != end; ++in) {
        if (*in != '%') {
            *out++ = static_cast<signed char>(*in);
            continue;
        }
        if (end - in < 3) throw Exception();
        *out++ = byteOf(static_cast<unsigned char>(in[1]), static_cast<unsigned char>(in[2]));
        in += 2;
    }
    return static_cast<std::size_t>(out - start);
}

String decoded(const signed char* bytes, std::size_t length)
{
    return String(bytes, static_cast<std::int32_t>(length), u"UTF-8");
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
    if (!isAscii(text)) {
        Utf8Bytes bytes(text);
        return decoded(bytes.data(), resolveEscapes(bytes.data(), bytes.length(), bytes.data()));
    }
    if (text.find(u'%') == std::u16string_view::npos) {
        return String(text.data(), static_cast<std::int32_t>(text.size()));
    }
    ByteRoom room;
    signed char* const bytes = room.make(text.size());
    return decoded(bytes, resolveEscapes(text.data(), text.size(), bytes));
}

} // namespace orv::net::internal
