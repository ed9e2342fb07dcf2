#pragma once

#include "orv/IORVUnknown.h"

namespace orv {
class String;
}

namespace orv::log {

/// Logs texts with a level of its own choice.
class ORV_API ILogger : public IORVUnknown {
public:
    /// Logs `text`, at the level that the logger has for texts without one.
    virtual void log(const String& text) = 0;

protected:
    ~ILogger() = default;
};

} // namespace orv::log
