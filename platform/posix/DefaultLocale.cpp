#include "platform/posix/internal/NarrowText.h"
#include "platform/posix/internal/Results.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include <langinfo.h>
#include <strings.h>

namespace orvcore {
namespace {

const char* valueOf(const char* variable) noexcept
{
    const char* value = std::getenv(variable);
    return value != nullptr && *value != 0 ? value : nullptr;
}

bool isOneOf(const char* name, std::initializer_list<const char*> names) noexcept
{
    for (const char* other : names) {
        if (strcasecmp(name, other) == 0) return true;
    }
    return false;
}

// CP1252 stands for the two Latin codesets whose printable characters it holds or nearly holds:
// bytes of the ISO8859_1 decoder come out sign-extended.
const char* encodingOfCodeset(const char* codeset) noexcept
{
    if (strcmp(codeset, "UTF-8") == 0) return "UTF-8"; // the usual one first, and fast
    if (isOneOf(codeset, {"ISO-8859-1", "ISO-8859-15", "CP1252", "WINDOWS-1252"})) return "CP1252";
    if (isOneOf(codeset, {"CP437", "IBM437"})) return "CP437";
    return "UTF-8";
}

// A name that is no plain "C" or "POSIX", with or without a codeset.
bool namesLanguage(const char* locale) noexcept
{
    return strcmp(locale, "C") != 0 && strcmp(locale, "POSIX") != 0 &&
           strncmp(locale, "C.", 2) != 0;
}

const char* defaultLocaleName() noexcept
{
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const char* name = valueOf(variable)) return namesLanguage(name) ? name : "en_US";
    }
    return "en_US";
}

ORVResult copyAscii(const char* name, char16_t* buffer, std::int32_t size) noexcept
{
    if (buffer == nullptr) return E_POINTER;
    const std::size_t length = std::strlen(name);
    if (size < 1 || length >= static_cast<std::size_t>(size)) return bufferTooSmall;
    for (std::size_t i = 0; i <= length; ++i) buffer[i] = static_cast<unsigned char>(name[i]);
    return S_OK;
}

} // namespace

const char* defaultEncodingName() noexcept
{
    const char* chosen = valueOf("ORV_ENCODING");
    return chosen != nullptr ? chosen : encodingOfCodeset(nl_langinfo(CODESET));
}

} // namespace orvcore

ORVResult ORVGetDefaultCharEncoding(char16_t* buffer, std::int32_t size) noexcept
{
    return orvcore::copyAscii(orvcore::defaultEncodingName(), buffer, size);
}

ORVResult ORVGetDefaultLocale(char16_t* buffer, std::int32_t size) noexcept
{
    return orvcore::copyAscii(orvcore::defaultLocaleName(), buffer, size);
}
