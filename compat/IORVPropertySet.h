#pragma once

#include "compat/IORVProperty.h"

/// Names with values, across the binary interface. Names are terminated texts. All operations
/// return a result code.
class ORV_API IORVPropertySet : public orv::IORVUnknown {
public:
    /// {7D1380FF-E2CA-4576-BD83-AD36CDA95FDD}
    static constexpr GUID IID{
        0x7D1380FF, 0xE2CA, 0x4576, {0xBD, 0x83, 0xAD, 0x36, 0xCD, 0xA9, 0x5F, 0xDD}};

    /// Gives `name` a text, which is copied.
    virtual orv::Result SetString(const char16_t* name, const char16_t* value) = 0;
    /// Replaces the content of `value` by the text of the value.
    virtual orv::Result GetString(const char16_t* name, orv::util::IORVCharBuffer* value) const = 0;
    /// Gives `name` the text of a number.
    virtual orv::Result SetLong(const char16_t* name, std::int32_t value) = 0;
    /// Stores the value as a number, 0 where its text begins with none.
    virtual orv::Result GetLong(const char16_t* name, std::int32_t* value) const = 0;
    virtual orv::Result SetDouble(const char16_t* name, double value) = 0;
    virtual orv::Result GetDouble(const char16_t* name, double* value) const = 0;
    /// Stores the number of properties.
    virtual orv::Result GetCount(std::int32_t* count) const = 0;
    /// Stores the property of that name, with a count for the caller.
    virtual orv::Result GetProperty(const char16_t* name, IORVProperty** property) const = 0;
    /// Stores the set that answers for names that are not in this one, with a count for the caller.
    virtual orv::Result GetParent(IORVPropertySet** parent) const = 0;
    /// Gives `name` this object, taking a count.
    virtual orv::Result Set(const char16_t* name, orv::IORVUnknown* value) = 0;
    /// Stores the value as the interface `iid`, with a count for the caller.
    virtual orv::Result Get(const char16_t* name, const GUID& iid, void** value) const = 0;

protected:
    ~IORVPropertySet() = default;
};

/// A property set that gives out properties and parent in their second version.
class ORV_API IORVPropertySet2 : public IORVPropertySet {
public:
    /// {6754E8C3-9765-487E-8EB4-CD2425E9DB86}
    static constexpr GUID IID{
        0x6754E8C3, 0x9765, 0x487E, {0x8E, 0xB4, 0xCD, 0x24, 0x25, 0xE9, 0xDB, 0x86}};

    /// The same as GetProperty() and GetParent().
    virtual orv::Result GetProperty2(const char16_t* name, IORVProperty2** property) const = 0;
    virtual orv::Result GetParent2(IORVPropertySet2** parent) const = 0;

protected:
    ~IORVPropertySet2() = default;
};
