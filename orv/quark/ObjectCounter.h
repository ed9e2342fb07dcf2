#pragma once

#include "orv/Export.h"

#include <atomic>
#include <cstdint>

namespace orv::quark {

/// The part of a module that its objects know: how many of them have an owner.
///
/// Threads: any.
class ORV_API ObjectCounter {
public:
    /// One more object has an owner; returns the new number.
    std::uint32_t addObject() noexcept { return m_objects.fetch_add(1) + 1; }

    /// One object less has an owner; returns the new number.
    std::uint32_t removeObject() noexcept { return m_objects.fetch_sub(1) - 1; }

    /// Objects with an owner, a snapshot.
    std::uint32_t objectCount() const noexcept { return m_objects.load(); }

private:
    std::atomic<std::uint32_t> m_objects{0};
};

} // namespace orv::quark
