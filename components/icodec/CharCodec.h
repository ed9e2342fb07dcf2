#pragma once

#include "components/icodec/Tables.h"
#include "orv/ComObject.h"
#include "orv/quark/Implements.h"
#include "orv/text/charset/IORVBlockCodec.h"
#include "orv/text/charset/IORVCharCodec.h"

namespace orv::components::icodec {

/// A codec over the tables of a code page, which all codecs of the page share.
///
/// Each sequence stands for itself: where iconv joins a letter and an accent behind it into one
/// character (CP1255, CP1258), this gives both. A character that has no bytes of its own there but
/// those of letter and accent is encoded so, as iconv does.
///
/// Threads: any.
class CharCodec : public quark::Implements<ComObject, text::charset::IORVCharCodec,
                                           text::charset::IORVBlockCodec> {
public:
    CharCodec(const CodePage& page, const Tables& tables) : m_page(page), m_tables(tables) {}

    Result QueryInterface(const GUID& iid, void** out) override;
    Result GetName(util::ICharBuffer* out) override;
    Result GetMaxBytesPerChar(std::int32_t* out) override;
    Result GetMaxCharsPerByte(std::int32_t* out) override;
    Result BytesToChar(const signed char* bytes, std::int32_t* n,
                       std::uint32_t* codePoint) override;
    Result CharToBytes(std::uint32_t codePoint, util::IByteBuffer* out) override;
    Result BytesToUnits(const signed char* bytes, std::int32_t* n, char16_t* units,
                        std::int32_t* count) override;
    Result UnitsToBytes(const char16_t* units, std::int32_t* n, signed char* bytes,
                        std::int32_t* count) override;

    static const quark::InterfaceData* GetComIntfMap();

private:
    const CodePage& m_page;
    const Tables& m_tables;
};

/// The class of the codecs of row `ROW` of the code pages.
template <std::size_t ROW>
class CodecOf final : public CharCodec {
public:
    /// Throws ResultException as Tables does.
    CodecOf() : CharCodec(codePages[ROW], tables()) {}

    static const char16_t* GetComProgID() { return codePages[ROW].progId; }
    static const char16_t* GetComDescription() { return u"Character codec"; }

private:
    /// Never freed: what a host still writes while it ends may need them.
    static const Tables& tables()
    {
        static const Tables& tables = *new Tables(codePages[ROW]);
        return tables;
    }
};

} // namespace orv::components::icodec
