#pragma once

#include "platform/orvcore.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace orv::io {

/// Gives memory back to orvcore.
struct FreeBlock {
    void operator()(void* memory) const noexcept { orvcore::deallocate(memory); }
};

/// Bytes or code units that a stream owns, from orvcore's memory.
template <class Unit>
using Block = std::unique_ptr<Unit[], FreeBlock>;

/// Room for `count` units, not filled; a negative count is 0. Throws std::bad_alloc.
template <class Unit>
[[nodiscard]] Block<Unit> allocateBlock(std::int32_t count)
{
    const auto units = static_cast<std::size_t>(std::max(count, 0));
    return Block<Unit>(static_cast<Unit*>(orvcore::allocate(units * sizeof(Unit))));
}

} // namespace orv::io
