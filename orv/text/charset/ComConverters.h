#pragma once

#include "orv/Reference.h"
#include "orv/text/charset/IORVBlockCodec.h"
#include "orv/text/charset/IORVCharCodec.h"
#include "orv/text/charset/MultiByteConverters.h"
#include "orv/util/ByteBuffers.h"

namespace orv::text::charset {

/// A decoder over an external codec, which it keeps alive. Where the codec offers IORVBlockCodec
/// too, plain text goes through that; not in a derived class, whose convertBytes() sees everything.
class ORV_API BTCCom : public BTCMultiByte {
public:
    /// Reads name and maxima from `codec`; throws ResultException where it refuses them.
    explicit BTCCom(IORVCharCodec* codec);
    ~BTCCom() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;

protected:
    /// A codec that fails says nothing else than U+FFFD.
    std::uint32_t convertBytes(const signed char* bytes, std::int32_t& n) override;

private:
    Reference<IORVCharCodec> m_codec;
    Reference<IORVBlockCodec> m_blocks; ///< of the same codec; may be null
};

/// An encoder over an external codec, which it keeps alive. A codec that fails on a character
/// counts as one that has no bytes for it. IORVBlockCodec is used as by BTCCom.
class ORV_API CTBCom : public CTBMultiByte {
public:
    /// Reads name and maxima from `codec`; throws ResultException where it refuses them.
    explicit CTBCom(IORVCharCodec* codec);
    ~CTBCom() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;

protected:
    std::int32_t convertChar(std::uint32_t codePoint, signed char* buffer,
                             std::int32_t size) override;

private:
    Reference<IORVCharCodec> m_codec;
    Reference<IORVBlockCodec> m_blocks; ///< of the same codec; may be null
    /// What the codec fills; a new one whenever the codec keeps a count on the last.
    Reference<util::RWByteBuffer> m_bytes;
};

} // namespace orv::text::charset
