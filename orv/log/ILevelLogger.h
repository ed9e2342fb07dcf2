#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv {
class String;
}

namespace orv::log {

/// Logs texts with a level.
class ORV_API ILevelLogger : public IORVUnknown {
public:
    /// Logs `text`. A level is a plain number: it has no names, and nothing is left out by it.
    virtual void log(std::int32_t level, const String& text) = 0;

protected:
    ~ILevelLogger() = default;
};

} // namespace orv::log
