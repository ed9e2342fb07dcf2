#pragma once

#include "orv/Reference.h"
#include "orv/text/charset/IORVCharCodec.h"
#include "orv/text/charset/MultiByteConverters.h"

namespace orv::text::charset {

/// A decoder over an external codec, which it keeps alive.
class ORV_API BTCCom : public BTCMultiByte {
public:
    /// Reads name and maxima from `codec`; throws ResultException where it refuses them.
    explicit BTCCom(IORVCharCodec* codec);
    ~BTCCom() noexcept(false) override;

protected:
    /// A codec that fails says nothing else than U+FFFD.
    std::uint32_t convertBytes(const signed char* bytes, std::int32_t& n) override;

private:
    Reference<IORVCharCodec> m_codec;
};

/// An encoder over an external codec, which it keeps alive. A codec that fails on a character
/// counts as one that has no bytes for it.
class ORV_API CTBCom : public CTBMultiByte {
public:
    /// Reads name and maxima from `codec`; throws ResultException where it refuses them.
    explicit CTBCom(IORVCharCodec* codec);
    ~CTBCom() noexcept(false) override;

protected:
    std::int32_t convertChar(std::uint32_t codePoint, signed char* buffer,
                             std::int32_t size) override;

private:
    Reference<IORVCharCodec> m_codec;
};

} // namespace orv::text::charset
