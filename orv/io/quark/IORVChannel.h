#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/ICharBuffer.h"

#include <cstdint>

namespace orv::io::quark {

/// A channel as components see it. All operations return a result code.
class ORV_API IORVChannel : public IORVUnknown {
public:
    /// {D2B1BFAE-EC92-4F2F-9DEC-4D98EA94598C}
    static constexpr GUID IID{
        0xD2B1BFAE, 0xEC92, 0x4F2F, {0x9D, 0xEC, 0x4D, 0x98, 0xEA, 0x94, 0x59, 0x8C}};

    /// Reads up to `*n` bytes and stores in `*n` how many came, -1 at the end. A failure leaves
    /// `*n` as it was.
    virtual Result Read(signed char* buffer, std::int32_t* n) = 0;
    /// Writes up to `*n` bytes and stores in `*n` how many went. A failure leaves `*n` as it was.
    virtual Result Write(const signed char* buffer, std::int32_t* n) = 0;
    /// Stores the name under which a further process can take the channel over; E_NOT_AVAILABLE
    /// where it has none.
    virtual Result GetInheritableName(util::ICharBuffer* name) = 0;

protected:
    ~IORVChannel() = default;
};

} // namespace orv::io::quark
