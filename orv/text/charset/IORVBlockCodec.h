#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv::text::charset {

/// What a codec may offer beside IORVCharCodec: the plain stretches of a text in one call.
///
/// A character is plain where it is one unit, neither a surrogate nor U+FFFD. BTCCom and CTBCom ask
/// for the plain characters first and for the one that ends them through IORVCharCodec, so both
/// interfaces must agree. A negative result counts as nothing converted.
class ORV_API IORVBlockCodec : public IORVUnknown {
public:
    /// {FF948319-413D-4D4C-8816-BCF09A72EB48}
    static constexpr GUID IID{
        0xFF948319, 0x413D, 0x4D4C, {0x88, 0x16, 0xBC, 0xF0, 0x9A, 0x72, 0xEB, 0x48}};

    /// Decodes plain characters of the `*n` bytes at `bytes` into `units`, which has room for
    /// `*count`. Stores the bytes consumed and the units written.
    virtual Result BytesToUnits(const signed char* bytes, std::int32_t* n, char16_t* units,
                                std::int32_t* count) = 0;

    /// Encodes plain characters of the `*n` units at `units` into `bytes`, which has room for
    /// `*count`. Stores the units consumed and the bytes written; the rest of the room may be used
    /// for scratch.
    virtual Result UnitsToBytes(const char16_t* units, std::int32_t* n, signed char* bytes,
                                std::int32_t* count) = 0;

protected:
    ~IORVBlockCodec() = default;
};

} // namespace orv::text::charset
