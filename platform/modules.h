#pragma once

#include "platform/orvcore.h"

/// \file
/// What a loaded library can learn about itself.

namespace orvcore {

/// The absolute path of the file that `address`, of code or of data, was loaded from, terminated;
/// `size` units. 0x8007007E where it belongs to no file, 0x80004009 where the room is too small.
ORVCORE_API ORVResult moduleFile(const void* address, char16_t* buffer, std::int32_t size) noexcept;

} // namespace orvcore
