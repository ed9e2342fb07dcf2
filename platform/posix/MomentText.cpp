#include "platform/moment.h"

#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <cwchar>

#include <locale.h>

namespace orvcore {
namespace {

constexpr std::size_t PART_ROOM = 200;
constexpr std::size_t ROOM = 2 * PART_ROOM;
constexpr std::size_t KEY_SIZE = offsetof(STRUCT_ORV_TIME, millisecond);
constexpr std::size_t LOCALE_ROOM = 64;

/// The text that a thread has made last, and of what.
struct Recent {
    STRUCT_ORV_TIME moment{};
    bool longDate = false;
    char locale[LOCALE_ROOM] = ""; ///< empty where there is no text
    char16_t text[ROOM] = u"";
    std::int32_t length = 0;
};

constinit thread_local Recent t_recent;

/// The locale of the process, whatever that of the thread is.
class ProcessLocale {
public:
    ProcessLocale() noexcept : m_locale(duplocale(LC_GLOBAL_LOCALE)) {}
    ~ProcessLocale()
    {
        if (m_locale != locale_t{}) freelocale(m_locale);
    }
    ProcessLocale(const ProcessLocale&) = delete;
    ProcessLocale& operator=(const ProcessLocale&) = delete;

    locale_t get() const noexcept { return m_locale; }

private:
    locale_t m_locale;
};

/// False for a record that is no moment.
bool toBroken(const STRUCT_ORV_TIME& moment, std::tm& broken) noexcept
{
    broken.tm_year = moment.year - 1900;
    broken.tm_mon = moment.month - 1;
    broken.tm_mday = moment.day;
    broken.tm_hour = moment.hour;
    broken.tm_min = moment.minute;
    broken.tm_sec = moment.second;
    const bool isLeapSecond = moment.second == 60;
    if (isLeapSecond) broken.tm_sec = 59;
    const std::tm wanted = broken;
    timegm(&broken); // carries what is too large, and finds the weekday
    const bool isMoment = broken.tm_year == wanted.tm_year && broken.tm_mon == wanted.tm_mon &&
                          broken.tm_mday == wanted.tm_mday && broken.tm_hour == wanted.tm_hour &&
                          broken.tm_min == wanted.tm_min && broken.tm_sec == wanted.tm_sec;
    broken.tm_sec += isLeapSecond ? 1 : 0;
    return isMoment;
}

/// Appends a date or time to `*out` and moves that to its end; false where it has no text.
bool appendPart(const wchar_t* pattern, const std::tm& broken, locale_t locale,
                char16_t** out) noexcept
{
    wchar_t part[PART_ROOM];
    const std::size_t length = wcsftime_l(part, PART_ROOM, pattern, &broken, locale);
    const wchar_t* end = part + length;
    const wchar_t* begin = part;
    while (begin != end && *begin == L' ') ++begin;
    while (begin != end && end[-1] == L' ') --end;
    // No locale has a name of a day or a month outside the basic plane.
    *out = std::transform(begin, end, *out, [](wchar_t unit) {
        return unit > 0xFFFF ? u'\xFFFD' : static_cast<char16_t>(unit);
    });
    return begin != end;
}

ORVResult makeText(const std::tm& broken, bool longDate, Recent& recent) noexcept
{
    const ProcessLocale locale;
    if (locale.get() == locale_t{}) return E_OUTOFMEMORY;
    char16_t* end = recent.text;
    if (!appendPart(longDate ? L"%A, %e %B %Y" : L"%x", broken, locale.get(), &end)) return E_FAIL;
    *end++ = u' ';
    if (!appendPart(L"%X", broken, locale.get(), &end)) return E_FAIL;
    recent.length = static_cast<std::int32_t>(end - recent.text);
    return S_OK;
}

bool isRecent(const STRUCT_ORV_TIME& moment, bool longDate, const char* locale) noexcept
{
    return std::memcmp(&moment, &t_recent.moment, KEY_SIZE) == 0 && t_recent.longDate == longDate &&
           std::strcmp(locale, t_recent.locale) == 0;
}

ORVResult renew(const STRUCT_ORV_TIME& moment, bool longDate, const char* locale) noexcept
{
    std::tm broken{};
    if (!toBroken(moment, broken)) return E_INVALIDARG;
    t_recent.locale[0] = 0;
    if (const ORVResult result = makeText(broken, longDate, t_recent); result < 0) return result;
    t_recent.moment = moment;
    t_recent.longDate = longDate;
    // A name that does not fit is never found again, and the text made anew each time.
    if (std::strlen(locale) < LOCALE_ROOM) std::strcpy(t_recent.locale, locale);
    return S_OK;
}

} // namespace

ORVResult formatMoment(const STRUCT_ORV_TIME& moment, bool longDate, char16_t* out,
                       std::int32_t size, std::int32_t* length) noexcept
{
    if (out == nullptr || length == nullptr) return E_POINTER;
    const char* const locale = std::setlocale(LC_TIME, nullptr);
    if (locale == nullptr) return E_FAIL;
    if (!isRecent(moment, longDate, locale)) {
        if (const ORVResult result = renew(moment, longDate, locale); result < 0) return result;
    }
    if (size <= t_recent.length) return bufferTooSmall;
    std::copy_n(t_recent.text, t_recent.length, out);
    out[t_recent.length] = u'\0';
    *length = t_recent.length;
    return S_OK;
}

} // namespace orvcore
