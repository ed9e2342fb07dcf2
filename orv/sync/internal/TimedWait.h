#pragma once

#include "orv/Failure.h"

namespace orv::sync {

/// What a timed wait returns for `result`: true for 0, false for a time-out and for any positive
/// result. Throws for other failures.
inline bool passedInTime(Result result)
{
    if (result == E_TIMED_OUT) return false;
    return throwIfFailed(result) == S_OK;
}

} // namespace orv::sync
