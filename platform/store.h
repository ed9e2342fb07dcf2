#pragma once

#include "platform/orvcore.h"

/// \file
/// Where the configuration store is.

namespace orvcore {

/// The path of the store's file, which need not exist, terminated; `size` units. Returns the
/// length, 0 where the environment names none or the room is too small.
ORVCORE_API std::int32_t storePath(char16_t* buffer, std::int32_t size) noexcept;

} // namespace orvcore
