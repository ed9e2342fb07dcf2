#include "platform/posix/internal/NarrowText.h"

#include "platform/posix/internal/Results.h"

#include <cstdlib>
#include <cstring>

#include <iconv.h>
#include <strings.h>

namespace orvcore {
namespace {

constexpr char32_t noCharacter = 0xFFFFFFFF;

bool isNoConverter(iconv_t converter) noexcept
{
    return converter == reinterpret_cast<iconv_t>(std::intptr_t{-1});
}

// Takes one character, noCharacter for a surrogate that stands alone.
char32_t takeCharacter(const char16_t*& text) noexcept
{
    const char32_t first = *text++;
    if (first < 0xD800 || first > 0xDFFF) return first;
    const char32_t second = *text;
    if (first > 0xDBFF || second < 0xDC00 || second > 0xDFFF) return noCharacter;
    ++text;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

std::size_t encodeUtf8(char32_t character, char* out) noexcept
{
    if (character < 0x80) {
        out[0] = static_cast<char>(character);
        return 1;
    }
    std::size_t followers = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    const std::size_t count = followers + 1;
    const char32_t lead = (0xF00u >> count) & 0xFF;
    *out++ = static_cast<char>(lead | (character >> (6 * followers)));
    while (followers-- > 0) {
        *out++ = static_cast<char>(0x80 | ((character >> (6 * followers)) & 0x3F));
    }
    return count;
}

std::size_t encodeBy(iconv_t converter, char32_t character, char* out) noexcept
{
    char* in = reinterpret_cast<char*>(&character);
    std::size_t inLeft = sizeof character;
    char* place = out;
    std::size_t left = NarrowEncoder::maxBytes;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &in, &inLeft, &place, &left) != 0 || inLeft != 0) return 0;
    return static_cast<std::size_t>(place - out);
}

bool isUtf8(const char* name) noexcept
{
    return strcasecmp(name, "UTF-8") == 0 || strcasecmp(name, "UTF8") == 0;
}

// A file name with a "/" that is not the byte 0x2F could not be handed to the system.
bool keepsAscii(iconv_t converter) noexcept
{
    char out[NarrowEncoder::maxBytes];
    return encodeBy(converter, U'/', out) == 1 && out[0] == '/';
}

// Null for UTF-8.
iconv_t openEncoder() noexcept
{
    const char* name = defaultEncodingName();
    if (isUtf8(name)) return nullptr;
    if (strcasecmp(name, "ISO8859_1") == 0) name = "ISO-8859-1";

    const iconv_t converter = iconv_open(name, "UTF-32LE");
    if (isNoConverter(converter)) return nullptr;
    if (keepsAscii(converter)) return converter;
    iconv_close(converter);
    return nullptr;
}

// Null for UTF-8.
iconv_t openDecoder() noexcept
{
    const iconv_t encoder = openEncoder();
    if (encoder == nullptr) return nullptr;
    iconv_close(encoder);

    const char* name = defaultEncodingName();
    if (strcasecmp(name, "ISO8859_1") == 0) name = "ISO-8859-1";
    const iconv_t converter = iconv_open("UTF-16LE", name);
    return isNoConverter(converter) ? nullptr : converter;
}

/// narrowExactly() from the first character outside ASCII on, behind `length` bytes.
ORVResult narrowRest(const char16_t* text, char* out, std::size_t size, std::size_t length) noexcept
{
    NarrowEncoder encoder;
    char bytes[NarrowEncoder::maxBytes];
    while (*text != 0) {
        const std::size_t count = encoder.encode(&text, bytes);
        if (count == 0) return invalidName;
        if (length + count >= size) return nameTooLong;
        std::memcpy(out + length, bytes, count);
        length += count;
    }
    out[length] = 0;
    return S_OK;
}

} // namespace

NarrowEncoder::NarrowEncoder() noexcept : m_converter(openEncoder()) {}

NarrowEncoder::~NarrowEncoder()
{
    if (m_converter != nullptr) iconv_close(m_converter);
}

std::size_t NarrowEncoder::encode(const char16_t** text, char* out) noexcept
{
    const char32_t character = takeCharacter(*text);
    if (character == noCharacter) return 0;
    if (character < 0x80 || m_converter == nullptr) return encodeUtf8(character, out);
    return encodeBy(m_converter, character, out);
}

ORVResult narrowExactly(const char16_t* text, char* out, std::size_t size) noexcept
{
    // ASCII, which most names are, is the same in every encoding that counts here.
    std::size_t length = 0;
    for (; *text != 0 && *text < 0x80; ++text) {
        if (length + 1 >= size) return nameTooLong;
        out[length++] = static_cast<char>(*text);
    }
    if (*text != 0) return narrowRest(text, out, size, length);
    if (length >= size) return nameTooLong;
    out[length] = 0;
    return S_OK;
}

std::int32_t widenExactly(const char* bytes, char16_t* out, std::int32_t size) noexcept
{
    if (size < 1) return -1;
    iconv_t converter = openDecoder();
    if (converter == nullptr) converter = iconv_open("UTF-16LE", "UTF-8");
    if (isNoConverter(converter)) return -1;

    char* in = const_cast<char*>(bytes);
    std::size_t inLeft = std::strlen(bytes);
    char* place = reinterpret_cast<char*>(out);
    std::size_t left = static_cast<std::size_t>(size - 1) * sizeof(char16_t);
    const bool whole =
        iconv(converter, &in, &inLeft, &place, &left) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    if (!whole) return -1;

    const auto length = static_cast<std::int32_t>((place - reinterpret_cast<char*>(out)) / 2);
    out[length] = 0;
    return length;
}

NarrowText::~NarrowText()
{
    if (m_bytes != m_short) std::free(m_bytes);
}

ORVResult NarrowText::assign(const char16_t* text) noexcept
{
    constexpr std::size_t mostBytesPerUnit = 4;
    const std::size_t size = static_cast<std::size_t>(ORVStrLenW(text)) * mostBytesPerUnit + 1;
    if (m_bytes != m_short) std::free(m_bytes);
    m_bytes = m_short;
    m_short[0] = 0;
    if (size <= sizeof m_short) return narrowExactly(text, m_short, sizeof m_short);

    auto* bytes = static_cast<char*>(std::malloc(size));
    if (bytes == nullptr) return E_OUTOFMEMORY;
    m_bytes = bytes;
    m_bytes[0] = 0;
    return narrowExactly(text, m_bytes, size);
}

} // namespace orvcore

std::int32_t ORVUnicodeToAnsi(char* destination, const char16_t* text, std::int32_t size) noexcept
{
    if (destination == nullptr || text == nullptr || size < 1) return 0;

    orvcore::NarrowEncoder encoder;
    char bytes[orvcore::NarrowEncoder::maxBytes];
    std::int32_t length = 0;
    while (*text != 0) {
        if (*text < 0x80 && length < size - 1) {
            destination[length++] = static_cast<char>(*text++);
            continue;
        }
        std::size_t count = encoder.encode(&text, bytes);
        if (count == 0) {
            bytes[0] = '?';
            count = 1;
        }
        if (count >= static_cast<std::size_t>(size - length)) break;
        std::memcpy(destination + length, bytes, count);
        length += static_cast<std::int32_t>(count);
    }
    destination[length] = 0;
    return length + 1;
}
