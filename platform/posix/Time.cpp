#include "platform/orvcore.h"

#include "platform/posix/internal/Results.h"

#include <ctime>

#include <time.h>

namespace {

STRUCT_ORV_TIME recordOf(const std::tm& broken, long nanoseconds) noexcept
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
    record.millisecond = field(nanoseconds / 1'000'000);
    return record;
}

using Break = std::tm* (*)(const std::time_t*, std::tm*);

ORVResult presentMoment(Break breakDown, STRUCT_ORV_TIME* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    timespec now{};
    if (clock_gettime(CLOCK_REALTIME, &now) != 0) return orvcore::lastError();
    std::tm broken{};
    if (breakDown(&now.tv_sec, &broken) == nullptr) return E_FAIL;
    *out = recordOf(broken, now.tv_nsec);
    return S_OK;
}

} // namespace

ORVResult ORVTimeGetLocal(STRUCT_ORV_TIME* out, void*) noexcept
{
    // localtime_r alone would keep to the zone that it met first.
    tzset();
    return presentMoment(localtime_r, out);
}

ORVResult ORVTimeGetSystem(STRUCT_ORV_TIME* out, void*) noexcept
{
    return presentMoment(gmtime_r, out);
}

ORVResult ORVTimeFromPosix(std::int32_t seconds, STRUCT_ORV_TIME* out) noexcept
{
    if (out == nullptr) return E_POINTER;
    const std::time_t moment = seconds;
    std::tm broken{};
    if (gmtime_r(&moment, &broken) == nullptr) return E_FAIL;
    *out = recordOf(broken, 0);
    return S_OK;
}
