#pragma once

#include "orv/Result.h"

namespace orv::text::charset {

/// An encoding that has a code page.
struct EncInfo {
    const char16_t* name;   ///< the canonical name; lives as long as the library
    std::uint32_t codePage; ///< never 0
    std::uint32_t reserved; ///< 0
};

/// Everything that the library knows of an encoding by itself.
struct EncodingInfo {
    const char16_t* name;    ///< the canonical name; lives as long as the library
    std::uint32_t codePage;  ///< 0 for none
    std::uint32_t isBuiltIn; ///< 1 where the library has the converters, else 0
    const char16_t* const*
        aliases; ///< its other names, ended by null; lives as long as the library
};

} // namespace orv::text::charset

extern "C" {

/// Copies the encodings that have a code page to `out`, which has room for `*count` records, and
/// stores their number in `*count`. 0x80004009 with the number where the room is too small, so a
/// first call with 0 and null asks for it. 0x80070057 for a null `count`, and for a null `out` with
/// a `*count` above 0. Threads: any.
ORV_API orv::Result ORVEnumerateEncInfo(std::uint32_t* count,
                                        orv::text::charset::EncInfo* out) noexcept;

/// The same for all encodings of the library's tables, with their aliases.
ORV_API orv::Result ORVEnumerateEncodings(std::uint32_t* count,
                                          orv::text::charset::EncodingInfo* out) noexcept;

/// Copies the record of a code page to `out`: 0x80070057 for a null `out`, 0x80004005 when there is
/// none. Names and the decimal texts of code pages are one set of keys, so a number that is an
/// alias is found too. Threads: any.
ORV_API orv::Result ORVGetEncInfoByCodePage(std::uint32_t codePage,
                                            orv::text::charset::EncInfo* out) noexcept;

/// Copies the record of a name or alias, case ignored, to `out`: 0x80070057 for a null pointer,
/// 0x80004005 when there is none. Encodings without a code page have none. Threads: any.
ORV_API orv::Result ORVGetEncInfoByName(const char16_t* name,
                                        orv::text::charset::EncInfo* out) noexcept;

} // extern "C"
