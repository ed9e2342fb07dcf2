#pragma once

#include "orv/IORVUnknown.h"
#include "orv/Result.h"

namespace orv::log::quark {

class ILogEntry;

/// A log processor as components see it, who work in result codes.
class ORV_API ILogProcessor : public IORVUnknown {
public:
    /// Takes `entry`; a failure goes to whoever logged.
    virtual Result Process(ILogEntry* entry) = 0;

protected:
    ~ILogProcessor() = default;
};

} // namespace orv::log::quark
