#pragma once

#include "orv/String.h"

namespace orv::util {

/// The order of the names of options in a map, by String::regionCompare() over whole names.
struct OptionOrder {
    bool ignoreCase;

    bool operator()(const String& a, const String& b) const
    {
        return a.regionCompare(0, -1, b, 0, ignoreCase) < 0;
    }
};

} // namespace orv::util
