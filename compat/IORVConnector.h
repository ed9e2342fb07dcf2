#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/ICharBuffer.h"

/// Connects to addresses as its properties say, across the binary interface. All operations return
/// a result code.
class ORV_API IORVConnector : public orv::IORVUnknown {
public:
    /// {1692968E-014C-4109-85A4-03D9905198B8}
    static constexpr GUID IID{
        0x1692968E, 0x014C, 0x4109, {0x85, 0xA4, 0x03, 0xD9, 0x90, 0x51, 0x98, 0xB8}};

    /// Stores the connection to `address` as the interface `iid`, with a count for the caller.
    virtual orv::Result Connect(const char16_t* address, const GUID& iid, void** out) = 0;
    /// Gives the property `name` a value. Both are terminated texts and are copied.
    virtual orv::Result SetProperty(const char16_t* name, const char16_t* value) = 0;
    /// Replaces the content of `value` by that of the property.
    virtual orv::Result GetProperty(const char16_t* name,
                                    orv::util::IORVCharBuffer* value) const = 0;

protected:
    ~IORVConnector() = default;
};
