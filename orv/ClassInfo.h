#pragma once

#include "orv/Result.h"

namespace orv {

/// What a host can learn of a run-time class without making one.
struct ClassInfo {
    const char16_t* name;     ///< lives as long as the library
    std::uint32_t hasFactory; ///< 1 where Class::createInstance() makes objects, else 0
};

} // namespace orv

/// Copies the library's own run-time classes, in the order of their registration, to `out`, which
/// has room for `*count`; receives their number in `*count`. E_BUFFER_TOO_SMALL with the number
/// where the room is too small, so a first call with 0 and null asks for it. E_INVALIDARG for a
/// null `count`, and for a null `out` with a `*count` above 0. Threads: any.
extern "C" ORV_API orv::Result ORVEnumerateClassInfo(std::uint32_t* count,
                                                     orv::ClassInfo* out) noexcept;
