#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/Fwd.h"

namespace orv::log {

/// One log entry: a record of named fields.
///
/// Threads: one at a time while fields are set; any number read it once a processor has it.
class ORV_API ILogEntry : public IORVUnknown {
public:
    /// Sets a field; a second set replaces the first. A field whose value is null counts as absent
    /// in hasField() and getField(), but getFieldNames() gives its name.
    virtual void setField(const String& name, const Object* value) = 0;

    /// The value of a field. Throws ResultException with 0x80070026 where there is none.
    virtual Reference<const Object> getField(const String& name) const = 0;

    /// Whether there is such a field.
    virtual bool hasField(const String& name) const = 0;

    /// The names as they are now, in an order that the names decide and not the setting.
    virtual Reference<const collections::Set<String>> getFieldNames() const = 0;

protected:
    ~ILogEntry() = default;
};

} // namespace orv::log
