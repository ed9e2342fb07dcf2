#pragma once

#include "orv/IORVUnknown.h"

namespace orv {

/// An object that has an order and a hash across the binary interface.
class ORV_API IORVComparable : public IORVUnknown {
public:
    /// {72038029-FA65-4255-A916-1C5680ACFEBF}
    static constexpr GUID IID{
        0x72038029, 0xFA65, 0x4255, {0xA9, 0x16, 0x1C, 0x56, 0x80, 0xAC, 0xFE, 0xBF}};

    /// Stores the order against `other` in `*result`: negative, 0 or positive.
    virtual Result CompareTo(const IORVUnknown* other, std::int32_t* result) const = 0;

    /// Stores the hash code in `*result`.
    virtual Result HashCode(std::uint32_t* result) const = 0;

protected:
    ~IORVComparable() = default;
};

} // namespace orv
