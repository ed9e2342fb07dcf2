#include "platform/orvcore.h"

#include "platform/posix/internal/RawLock.h"
#include "platform/posix/internal/Results.h"

#include <ctime>

#include <time.h>

namespace {

STRUCT_ORV_TIME recordOf(const std::tm& broken) noexcept
{
    const auto field = [](long value) { return static_cast<std::uint16_t>(value); };
    STRUCT_ORV_TIME record{};
    record.year = field(broken.tm_year + 1900L);
    record.month = field(broken.tm_mon + 1L);
    record.dayOfWeek = field(broken.tm_wday);
    record.day = field(broken.tm_mday);
    record.hour = field(broken.tm_hour);
    record.minute = field(broken.tm_min);
    record.second = field(broken.tm_sec);
    return record;
}

using Break = std::tm* (*)(const std::time_t*, std::tm*);

/// The second that a thread has broken down last.
struct BrokenSecond {
    std::time_t second = -1;
    STRUCT_ORV_TIME record{};
};

constinit thread_local BrokenSecond t_local [[gnu::tls_model("initial-exec")]];

// The C library has a lock of its own for the zone, which the thread sanitizer cannot see.
constinit orvcore::RawLock s_zoneLock;

std::tm* breakDownLocally(const std::time_t* second, std::tm* broken)
{
    const orvcore::RawGuard guard(s_zoneLock);
    // localtime_r alone would keep to the zone that it met first.
    tzset();
    return localtime_r(second, broken);
}

void setMillisecond(STRUCT_ORV_TIME& record, const timespec& now) noexcept
{
    record.millisecond = static_cast<std::uint16_t>(now.tv_nsec / 1'000'000);
}

ORVResult breakDown(Break method, std::time_t second, STRUCT_ORV_TIME& out) noexcept
{
    std::tm broken{};
    if (method(&second, &broken) == nullptr) return E_FAIL;
    out = recordOf(broken);
    return S_OK;
}

} // namespace

ORVResult ORVTimeGetLocal(STRUCT_ORV_TIME* out, void*) noexcept
{
    if (out == nullptr) return E_POINTER;
    timespec now{};
    if (clock_gettime(CLOCK_REALTIME, &now) != 0) return orvcore::lastError();
    // Looking the zone up costs several system calls, and every log entry wants its time.
    if (t_local.second != now.tv_sec) {
        const ORVResult result = breakDown(breakDownLocally, now.tv_sec, t_local.record);
        t_local.second = result < 0 ? -1 : now.tv_sec;
        if (result < 0) return result;
    }
    *out = t_local.record;
    setMillisecond(*out, now);
    return S_OK;
}

ORVResult ORVTimeGetSystem(STRUCT_ORV_TIME* out, void*) noexcept
{
    if (out == nullptr) return E_POINTER;
    timespec now{};
    if (clock_gettime(CLOCK_REALTIME, &now) != 0) return orvcore::lastError();
    const ORVResult result = breakDown(gmtime_r, now.tv_sec, *out);
    if (result == S_OK) setMillisecond(*out, now);
    return result;
}

ORVResult ORVTimeFromPosix(std::int32_t seconds, STRUCT_ORV_TIME* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    return breakDown(gmtime_r, seconds, *out);
}
