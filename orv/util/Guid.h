#pragma once

#include "orv/CoreAllocated.h"
#include "orv/String.h"
#include "platform/orvcore.h"

#include <cstdint>

namespace orv::util {

/// A 16-byte identifier as a value.
///
/// Comparing is between any two of Guid and GUID, by their 16 bytes. Threads: those of a plain
/// value.
class ORV_API Guid : public CoreAllocated {
public:
    /// All zero.
    Guid() noexcept = default;
    Guid(const GUID& guid) noexcept : m_guid(guid) {}

    /// Reads the form of toString(). Throws Exception("invalid GUID string").
    explicit Guid(const char16_t* text);

    operator const GUID&() const noexcept { return m_guid; }

    /// A new random identifier (version 4 of RFC 9562), which the caller deletes. Throws
    /// ResultException when the system has no random numbers to give.
    [[nodiscard]] static Guid* Generate();

    /// The order of the bytes: negative, 0 or positive.
    static std::int32_t compare(const GUID& a, const GUID& b) noexcept
    {
        return ORVComCompareGUID(a, b);
    }

    /// 38 units, as {72038029-FA65-4255-A916-1C5680ACFEBF}.
    String toString() const;

private:
    GUID m_guid{};
};

inline bool operator==(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) == 0;
}
inline bool operator!=(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) != 0;
}
inline bool operator<(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) < 0;
}
inline bool operator<=(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) <= 0;
}
inline bool operator>(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) > 0;
}
inline bool operator>=(const GUID& a, const GUID& b) noexcept
{
    return Guid::compare(a, b) >= 0;
}

} // namespace orv::util
