#pragma once

#include "orv/Export.h"
#include "orv/Result.h"

#include <cstdint>
#include <cstring>

namespace orv {

/// The root of all binary interfaces: three slots, no data.
///
/// Ownership: whoever receives an interface pointer through QueryInterface() owns one count and
/// gives it back by Release(). Threads: counting is atomic in all classes of the library.
class ORV_API IORVUnknown {
public:
    /// {00000000-0000-0000-C000-000000000046}
    static constexpr GUID IID{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    /// Stores the interface named by `iid` in `*out` with one count taken, and returns S_OK;
    /// null and E_NOINTERFACE where the object does not have it; E_POINTER for a null `out`.
    virtual Result QueryInterface(const GUID& iid, void** out) = 0;

    /// Takes a count; returns the new one.
    virtual std::uint32_t AddRef() const = 0;

    /// Gives a count back; the last one destroys the object. Returns the new count.
    virtual std::uint32_t Release() const = 0;

protected:
    ~IORVUnknown() = default;
};

/// Equality of identifiers, as two 64-bit comparisons.
inline bool equalGuid(const GUID& a, const GUID& b) noexcept
{
    std::uint64_t left[2];
    std::uint64_t right[2];
    std::memcpy(left, &a, sizeof left);
    std::memcpy(right, &b, sizeof right);
    return left[0] == right[0] && left[1] == right[1];
}

} // namespace orv
