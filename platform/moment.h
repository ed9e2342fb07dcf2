#pragma once

#include "platform/orvcore.h"

#include <cstdint>

/// \file
/// Moments as the user reads them.

namespace orvcore {

/// Writes the date of `moment`, a blank and its time of day as the locale of the process (LC_TIME)
/// does: `%x` or, for `longDate`, the day's name, day, month's name and year, then `%X`. The text
/// is terminated, `*length` leaves the terminator out; 400 units are always enough.
///
/// The weekday is taken from the date, whatever the record says. E_INVALIDARG for a record that is
/// no moment, as the 30th of February; 0x80004009 when `size` units are too few.
///
/// Each thread keeps the text of the second that it wrote last.
[[nodiscard]] ORVCORE_API ORVResult formatMoment(const STRUCT_ORV_TIME& moment, bool longDate,
                                                 char16_t* out, std::int32_t size,
                                                 std::int32_t* length) noexcept;

} // namespace orvcore
