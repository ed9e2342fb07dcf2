#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/IByteBuffer.h"
#include "orv/util/ICharBuffer.h"

#include <cstdint>

namespace orv::text::charset {

/// A codec that comes as a component: one encoding, character by character.
///
/// Implemented outside of the library and reached through BTCCom and CTBCom. Each operation returns
/// a result, negative for failure. Threads: the converters of one name each create a codec of their
/// own.
class ORV_API IORVCharCodec : public IORVUnknown {
public:
    /// {E9DE4D9A-BF89-4A97-B974-1F50BC5A8C61}
    static constexpr GUID IID{
        0xE9DE4D9A, 0xBF89, 0x4A97, {0xB9, 0x74, 0x1F, 0x50, 0xBC, 0x5A, 0x8C, 0x61}};

    /// Fills `out` with the name of the encoding.
    virtual Result GetName(util::ICharBuffer* out) = 0;

    /// Stores the most bytes that one character takes.
    virtual Result GetMaxBytesPerChar(std::int32_t* out) = 0;

    /// Stores the most characters that one byte gives.
    virtual Result GetMaxCharsPerByte(std::int32_t* out) = 0;

    /// Decodes one character of the `*n` bytes at `bytes`: sets `*n` to the bytes consumed, 0 when
    /// more are needed, and stores the code point, or U+FFFD for a sequence without one.
    virtual Result BytesToChar(const signed char* bytes, std::int32_t* n,
                               std::uint32_t* codePoint) = 0;

    /// Fills `out` with the bytes of `codePoint`; none at all where there are none.
    virtual Result CharToBytes(std::uint32_t codePoint, util::IByteBuffer* out) = 0;

protected:
    ~IORVCharCodec() = default;
};

} // namespace orv::text::charset
