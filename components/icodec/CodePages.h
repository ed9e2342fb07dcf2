#pragma once

#include "orv/Result.h"

#include <cstddef>

namespace orv::components::icodec {

/// A code page that this component serves.
struct CodePage {
    const char16_t* progId;
    const char* iconvName; ///< null where iconv lacks it
    GUID classId;

    /// The name of the encoding: the last word of the ProgID.
    constexpr const char16_t* name() const noexcept { return progId + PREFIX; }

private:
    static constexpr std::size_t PREFIX = sizeof("Tessaly.CharCodec.") - 1;
};

/// The class identifiers are one family, told apart by the number of the code page.
constexpr GUID classIdOf(std::uint16_t codePage) noexcept
{
    return {
        0xCA980000u + codePage, 0x3B3D, 0x4C9F, {0xB4, 0xA4, 0xAD, 0x15, 0xF4, 0x55, 0x40, 0x69}};
}

inline constexpr CodePage codePages[] = {
    {u"Tessaly.CharCodec.CP1250", "CP1250", classIdOf(1250)},
    {u"Tessaly.CharCodec.CP1251", "CP1251", classIdOf(1251)},
    {u"Tessaly.CharCodec.CP1253", "CP1253", classIdOf(1253)},
    {u"Tessaly.CharCodec.CP1254", "CP1254", classIdOf(1254)},
    {u"Tessaly.CharCodec.CP1255", "CP1255", classIdOf(1255)},
    {u"Tessaly.CharCodec.CP1256", "CP1256", classIdOf(1256)},
    {u"Tessaly.CharCodec.CP1257", "CP1257", classIdOf(1257)},
    {u"Tessaly.CharCodec.CP1258", "CP1258", classIdOf(1258)},
    {u"Tessaly.CharCodec.CP720", nullptr, classIdOf(720)},
    {u"Tessaly.CharCodec.CP737", "CP737", classIdOf(737)},
    {u"Tessaly.CharCodec.CP775", "CP775", classIdOf(775)},
    {u"Tessaly.CharCodec.CP850", "CP850", classIdOf(850)},
    {u"Tessaly.CharCodec.CP852", "CP852", classIdOf(852)},
    {u"Tessaly.CharCodec.CP855", "CP855", classIdOf(855)},
    {u"Tessaly.CharCodec.CP857", "CP857", classIdOf(857)},
    {u"Tessaly.CharCodec.CP858", "CP858", classIdOf(858)},
    {u"Tessaly.CharCodec.CP862", "CP862", classIdOf(862)},
    {u"Tessaly.CharCodec.CP866", "CP866", classIdOf(866)},
    {u"Tessaly.CharCodec.CP932", "CP932", classIdOf(932)},
    {u"Tessaly.CharCodec.CP936", "CP936", classIdOf(936)},
    {u"Tessaly.CharCodec.CP949", "CP949", classIdOf(949)},
    {u"Tessaly.CharCodec.CP950", "CP950", classIdOf(950)},
    {u"Tessaly.CharCodec.EUCJP", "EUC-JP", classIdOf(20932)},
};

} // namespace orv::components::icodec
