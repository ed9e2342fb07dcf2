#include "platform/orvcore.h"

#include "platform/posix/internal/Results.h"

#include <cerrno>
#include <cstring>

#include <sys/random.h>

namespace {

// Where each of the 16 bytes stands in the text form, and which byte of a little-endian GUID it is.
struct Place {
    int unit;
    int byte;
};
constexpr Place places[16] = {{1, 3},   {3, 2},   {5, 1},   {7, 0},  {10, 5},  {12, 4},
                              {15, 7},  {17, 6},  {20, 8},  {22, 9}, {25, 10}, {27, 11},
                              {29, 12}, {31, 13}, {33, 14}, {35, 15}};
constexpr int textLength = 38;
constexpr char16_t emptyForm[] = u"{        -    -    -    -            }";
static_assert(sizeof emptyForm == (textLength + 1) * sizeof(char16_t));

// 16 and more for what is no digit.
unsigned hexValue(char16_t unit) noexcept
{
    if (unit >= u'0' && unit <= u'9') return unit - unsigned{u'0'};
    const unsigned letter = unit | 0x20u;
    return letter >= u'a' && letter <= u'f' ? letter - u'a' + 10 : 16;
}

bool hasForm(const char16_t* text) noexcept
{
    for (int i = 0; i < textLength; ++i) {
        const bool matches =
            emptyForm[i] == u' ' ? hexValue(text[i]) < 16 : text[i] == emptyForm[i];
        if (!matches) return false;
    }
    return text[textLength] == 0;
}

} // namespace

std::int32_t ORVComCompareGUID(const GUID& a, const GUID& b) noexcept
{
    return std::memcmp(&a, &b, sizeof(GUID));
}

ORVResult ORVComGUIDFromString(const char16_t* text, GUID* out) noexcept
{
    if (text == nullptr || out == nullptr) return E_POINTER;
    if (!hasForm(text)) return E_INVALIDARG;
    std::uint8_t bytes[sizeof(GUID)];
    for (const Place& place : places) {
        const char16_t* digits = text + place.unit;
        bytes[place.byte] =
            static_cast<std::uint8_t>(hexValue(digits[0]) << 4 | hexValue(digits[1]));
    }
    std::memcpy(out, bytes, sizeof bytes);
    return S_OK;
}

ORVResult ORVComStringFromGUID(const GUID& guid, char16_t* buffer, std::int32_t size) noexcept
{
    if (buffer == nullptr) return E_POINTER;
    if (size <= textLength) return orvcore::bufferTooSmall;
    std::uint8_t bytes[sizeof(GUID)];
    std::memcpy(bytes, &guid, sizeof bytes);
    std::memcpy(buffer, emptyForm, sizeof emptyForm);
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    for (const Place& place : places) {
        buffer[place.unit] = digits[bytes[place.byte] >> 4];
        buffer[place.unit + 1] = digits[bytes[place.byte] & 15];
    }
    return S_OK;
}

ORVResult ORVComGenerateGUID(GUID* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    GUID made;
    while (getrandom(&made, sizeof made, 0) != static_cast<ssize_t>(sizeof made)) {
        if (errno != EINTR) return orvcore::lastError();
    }
    made.Data3 = static_cast<std::uint16_t>((made.Data3 & 0x0FFF) | 0x4000);
    made.Data4[0] = static_cast<std::uint8_t>((made.Data4[0] & 0x3F) | 0x80);
    *out = made;
    return S_OK;
}
