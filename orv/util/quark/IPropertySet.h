#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv::util::quark {

/// A property set as components see it. A value is an object that answers IORVCharBuffer. All
/// operations return a result code.
class ORV_API IPropertySet : public IORVUnknown {
public:
    /// {839722CD-7CC1-4B29-BA4E-0AA51F375ED7}
    static constexpr GUID IID{
        0x839722CD, 0x7CC1, 0x4B29, {0xBA, 0x4E, 0x0A, 0xA5, 0x1F, 0x37, 0x5E, 0xD7}};

    /// Gives `name`, a terminated text, the text of `value`.
    virtual Result Set(const char16_t* name, IORVUnknown* value) = 0;
    /// Stores the value of `name` as the interface `iid`, with a count for the caller.
    virtual Result Get(const char16_t* name, const GUID& iid, void** value) const = 0;
    /// The same, taking the name out of the set.
    virtual Result Remove(const char16_t* name, const GUID& iid, void** value) = 0;
    /// Stores an iterator over the names as the interface `iid`, as a rule IKeyIterator.
    virtual Result GetKeyIterator(const GUID& iid, void** iterator) const = 0;

protected:
    ~IPropertySet() = default;
};

/// Walks the names of a property set once.
class ORV_API IKeyIterator : public IORVUnknown {
public:
    /// {34EBD2C0-ADB3-45C5-9372-1AB8A16AB9FD}
    static constexpr GUID IID{
        0x34EBD2C0, 0xADB3, 0x45C5, {0x93, 0x72, 0x1A, 0xB8, 0xA1, 0x6A, 0xB9, 0xFD}};

    /// Stores the next name as the interface `iid`, as a rule IORVCharBuffer, with a count for the
    /// caller. Any failure is the end.
    virtual Result Next(const GUID& iid, void** key) = 0;

protected:
    ~IKeyIterator() = default;
};

} // namespace orv::util::quark
