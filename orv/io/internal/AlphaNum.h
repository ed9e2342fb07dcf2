#pragma once

#include "orv/Failure.h"
#include "orv/String.h"

namespace orv::io::internal {

inline constexpr const char16_t* ALPHANUM_DEFAULT = u"ABCDEFGHJKLMNPQRSTUVWXYZ23456789";
inline constexpr std::int32_t ALPHANUM_SYMBOLS = 32;

/// The alphabet named, or the default one. Throws ResultException where it is not 32 long.
inline String alphaNumAlphabet(const char16_t* alphabet)
{
    const String text(alphabet != nullptr ? alphabet : ALPHANUM_DEFAULT);
    if (text.getLength() != ALPHANUM_SYMBOLS) throwResult(E_INVALIDARG);
    return text;
}

} // namespace orv::io::internal
