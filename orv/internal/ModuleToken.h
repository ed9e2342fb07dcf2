#pragma once

namespace orv::internal {

/// What names this library to orvcore.
const void* moduleToken() noexcept;

} // namespace orv::internal
