#pragma once

#include <cstdint>

namespace orv::internal {

/// Units that somebody else keeps readable.
struct Units {
    const char16_t* data;
    std::int32_t length;

    /// The units from `start` on.
    Units from(std::int32_t start) const { return {data + start, length - start}; }
};

} // namespace orv::internal
