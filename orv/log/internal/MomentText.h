#pragma once

#include "orv/Failure.h"
#include "platform/moment.h"

namespace orv::log::internal {

/// Room for every text of a moment.
inline constexpr std::int32_t MOMENT_ROOM = 401;

/// Writes what TimeStamp::toString() gives; returns its length.
inline std::int32_t momentText(const STRUCT_ORV_TIME& time, bool longDate,
                               char16_t (&out)[MOMENT_ROOM])
{
    std::int32_t length = 0;
    throwIfFailed(orvcore::formatMoment(time, longDate, out, MOMENT_ROOM, &length));
    return length;
}

} // namespace orv::log::internal
