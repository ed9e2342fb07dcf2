#pragma once

#include "orv/Failure.h"
#include "orv/String.h"

#include <cstddef>
#include <string_view>

namespace orv::net::internal {

/// The units of a text, which is kept from being changed meanwhile. Throws ResultException where
/// its buffer refuses the lock.
class UnitsOf {
public:
    explicit UnitsOf(const String& text) : m_text(text)
    {
        const char16_t* units = nullptr;
        throwIfFailed(text.GetReadLock(&units));
        m_units = {units, static_cast<std::size_t>(text.getLength())};
    }
    UnitsOf(const UnitsOf&) = delete;
    UnitsOf& operator=(const UnitsOf&) = delete;
    ~UnitsOf() { static_cast<void>(m_text.ReleaseReadLock()); }

    std::u16string_view get() const noexcept { return m_units; }

private:
    const String& m_text;
    std::u16string_view m_units;
};

} // namespace orv::net::internal
