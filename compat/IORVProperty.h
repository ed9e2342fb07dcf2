#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/ICharBuffer.h"

#include <cstdint>

/// A key with a value, across the binary interface. A value is kept as an object and read as text
/// or as a number. All operations return a result code.
class ORV_API IORVProperty : public orv::IORVUnknown {
public:
    /// {F4D6503E-FAF4-45FD-B984-AEAAC1026F9A}
    static constexpr GUID IID{
        0xF4D6503E, 0xFAF4, 0x45FD, {0xB9, 0x84, 0xAE, 0xAA, 0xC1, 0x02, 0x6F, 0x9A}};

    /// Replaces the content of `key` by the key.
    virtual orv::Result GetKey(orv::util::IORVCharBuffer* key) const = 0;
    /// Replaces the content of `value` by the value's text.
    virtual orv::Result GetValueString(orv::util::IORVCharBuffer* value) const = 0;
    /// Stores the value as a number, 0 where its text begins with none.
    virtual orv::Result GetValueLong(std::int32_t* value) const = 0;
    virtual orv::Result GetValueDouble(double* value) const = 0;
    /// Lets the value be a text, which is copied, or the text of a number.
    virtual orv::Result SetValueString(const char16_t* value) = 0;
    virtual orv::Result SetValueLong(std::int32_t value) = 0;
    virtual orv::Result SetValueDouble(double value) = 0;

protected:
    ~IORVProperty() = default;
};

/// A property whose value may be any object.
class ORV_API IORVProperty2 : public IORVProperty {
public:
    /// {3F2440A7-302B-40E0-8A98-6D21FDD5465F}
    static constexpr GUID IID{
        0x3F2440A7, 0x302B, 0x40E0, {0x8A, 0x98, 0x6D, 0x21, 0xFD, 0xD5, 0x46, 0x5F}};

    /// Stores the value as the interface `iid`, with a count for the caller.
    virtual orv::Result GetValue(const GUID& iid, void** value) const = 0;
    /// Lets the value be this object, taking a count.
    virtual orv::Result SetValue(orv::IORVUnknown* value) = 0;

protected:
    ~IORVProperty2() = default;
};
