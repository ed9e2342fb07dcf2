#pragma once

#include "orv/IORVUnknown.h"
#include "orv/log/quark/IFieldIterator.h"

namespace orv::log::quark {

/// A log entry as components see it, who work in result codes. Names are terminated.
class ORV_API ILogEntry : public IORVUnknown {
public:
    /// {08D884D0-83C1-4881-9ADF-7AEA1A7256EC}
    static constexpr GUID IID{
        0x08D884D0, 0x83C1, 0x4881, {0x9A, 0xDF, 0x7A, 0xEA, 0x1A, 0x72, 0x56, 0xEC}};

    /// Sets a field. E_FAIL for a value that is no Object of the library, null too.
    virtual Result SetField(const char16_t* name, IORVUnknown* value) = 0;

    /// Queries the value of a field for `iid`. E_FAIL where there is no such field.
    virtual Result GetField(const char16_t* name, const GUID& iid, void** result) const = 0;

    /// 0 where there is such a field, 1 where there is none: a result, not a truth value.
    virtual Result HasField(const char16_t* name) const = 0;

    /// Stores a walk over the names, with a count for the caller.
    virtual Result GetFieldIterator(IFieldIterator** result) const = 0;

protected:
    ~ILogEntry() = default;
};

} // namespace orv::log::quark
