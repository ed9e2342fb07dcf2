#include "orv/log/TimeStamp.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/log/internal/MomentText.h"
#include "orv/math/BigDecimal.h"

#include <charconv>
#include <iterator>

namespace orv::log {

namespace {

constexpr std::int32_t PLACES = 3;

/// The moment as one number, its parts two digits each and the milliseconds three. What is too
/// large for its place carries over; the largest record fits.
std::uint64_t digitsOf(const STRUCT_ORV_TIME& time) noexcept
{
    std::uint64_t value = time.year;
    for (const std::uint16_t part : {time.month, time.day, time.hour, time.minute, time.second}) {
        value = value * 100 + part;
    }
    return value * 1000 + time.millisecond;
}

} // namespace

TimeStamp::TimeStamp(bool local)
{
    throwIfFailed(local ? ORVTimeGetLocal(&m_time, nullptr) : ORVTimeGetSystem(&m_time, nullptr));
}

TimeStamp::TimeStamp(std::int32_t posixSeconds)
{
    throwIfFailed(ORVTimeFromPosix(posixSeconds, &m_time));
}

TimeStamp::~TimeStamp() noexcept(false) = default;

String TimeStamp::toString() const
{
    return toString(false);
}

String TimeStamp::toString(bool longDate) const
{
    char16_t text[internal::MOMENT_ROOM];
    return String(text, internal::momentText(m_time, longDate, text));
}

String TimeStamp::toLog() const
{
    const std::uint64_t value = digitsOf(m_time);
    if (value < 1000) return math::BigDecimal(math::BigInteger(value), PLACES).toString();

    char digits[24];
    char* const end = std::to_chars(digits, std::end(digits), value).ptr;
    String text(static_cast<std::int32_t>(sizeof digits));
    for (const char* digit = digits; digit != end; ++digit) {
        if (end - digit == PLACES) text.append(u'.');
        text.append(static_cast<char16_t>(*digit));
    }
    return text;
}

} // namespace orv::log
