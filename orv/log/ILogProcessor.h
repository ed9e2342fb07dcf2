#pragma once

#include "orv/IORVUnknown.h"

namespace orv::log {

class ILogEntry;

/// What log entries are handed to: a writer at the end of the road, or something on the way.
class ORV_API ILogProcessor : public IORVUnknown {
public:
    /// Takes `entry`, which is not null and belongs to others: whoever keeps it takes a Reference,
    /// and nobody changes it from here on. Failures are exceptions.
    virtual void process(const ILogEntry* entry) = 0;

protected:
    ~ILogProcessor() = default;
};

} // namespace orv::log
