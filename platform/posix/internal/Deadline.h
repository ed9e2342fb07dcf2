#pragma once

#include "platform/orvcore.h"

#include <cstdint>
#include <ctime>

namespace orvcore {

/// The moment on the monotonic clock at which a wait ends, or none.
class Deadline {
public:
    /// Never.
    constexpr Deadline() noexcept = default;

    /// `milliseconds` from now; ORV_INFINITE is never.
    static Deadline after(std::uint32_t milliseconds) noexcept;

    /// Null for never.
    const timespec* moment() const noexcept { return m_never ? nullptr : &m_moment; }

private:
    bool m_never = true;
    timespec m_moment{};
};

} // namespace orvcore
