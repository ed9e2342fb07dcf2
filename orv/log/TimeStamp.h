#pragma once

#include "orv/Object.h"
#include "platform/orvcore.h"

#include <cstdint>

namespace orv::log {

/// A moment, to the millisecond, as a value of log entries.
///
/// A change of the zone (`TZ`) reaches new local stamps within a second.
class ORV_API TimeStamp : public Object {
public:
    /// Now, in local time, or in UTC. Throws ResultException where the system has no time.
    explicit TimeStamp(bool local = true);
    /// The moment of a record, taken as it stands.
    explicit TimeStamp(const STRUCT_ORV_TIME& time) noexcept : m_time(time) {}
    /// So many seconds after the start of 1970, in UTC.
    explicit TimeStamp(std::int32_t posixSeconds);
    ~TimeStamp() noexcept(false) override;

    /// toString(false).
    String toString() const override;

    /// Date and time of day, with a blank between, in the words of the process's locale, the date
    /// short or long. Throws ResultException where the record is no moment of the calendar.
    virtual String toString(bool longDate) const;

    /// The moment in digits, the same in every locale and in order of time: YYYYMMDDHHMMSS.mmm, as
    /// 20261114082228.123.
    virtual String toLog() const;

private:
    STRUCT_ORV_TIME m_time;
};

} // namespace orv::log
