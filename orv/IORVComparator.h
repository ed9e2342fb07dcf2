#pragma once

#include "orv/IORVUnknown.h"

namespace orv {

/// An order and a hash for elements of collections, across the binary interface.
///
/// Both operations must agree: elements that compare equal have the same hash.
class ORV_API IORVComparator : public IORVUnknown {
public:
    /// {176573E2-C217-4F04-AD8E-E677CA683245}
    static constexpr GUID IID{
        0x176573E2, 0xC217, 0x4F04, {0xAD, 0x8E, 0xE6, 0x77, 0xCA, 0x68, 0x32, 0x45}};

    /// Stores the order of `a` against `b` in `*result`: negative, 0 or positive. Either may be
    /// null if the comparator accepts it.
    virtual Result Compare(const IORVUnknown* a, const IORVUnknown* b,
                           std::int32_t* result) const = 0;

    /// Stores the hash of `a` in `*result`.
    virtual Result Hash(const IORVUnknown* a, std::uint32_t* result) const = 0;

protected:
    ~IORVComparator() = default;
};

} // namespace orv
