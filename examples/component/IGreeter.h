#pragma once

#include <orv/IORVUnknown>
#include <orv/util/ICharBuffer>

/// What hosts know of a greeter.
class IGreeter : public orv::IORVUnknown {
public:
    /// {5D0B6C1E-2F2A-4C57-9C0B-7A41E0F3D6A2}
    static constexpr GUID IID{
        0x5D0B6C1E, 0x2F2A, 0x4C57, {0x9C, 0x0B, 0x7A, 0x41, 0xE0, 0xF3, 0xD6, 0xA2}};

    /// Replaces the content of `out` by a greeting of `name`.
    virtual orv::Result Greet(const char16_t* name, orv::util::ICharBuffer* out) const = 0;

protected:
    ~IGreeter() = default;
};
