#pragma once

#include "platform/orvcore.h"

#include <climits>

/// \file
/// The one way in which the names that hosts give become names of files.

namespace orvcore {

/// Both slashes separate.
constexpr bool isSeparator(char16_t unit) noexcept
{
    return unit == u'/' || unit == u'\\';
}

/// Whether a drive stands at the start of `path`: a letter and a colon.
constexpr bool hasDrive(const char16_t* path) noexcept
{
    const char16_t letter = static_cast<char16_t>(path[0] | 0x20);
    return letter >= u'a' && letter <= u'z' && path[1] == u':';
}

/// Whether the name of a server stands at the start of `path`, behind two separators.
constexpr bool hasServer(const char16_t* path) noexcept
{
    return isSeparator(path[0]) && isSeparator(path[1]) && path[2] != 0 && !isSeparator(path[2]);
}

/// A path as the system takes it: with slashes, in the default encoding. Drive C: is dropped from
/// its start; what follows it without a separator counts from the current folder.
class NativePath {
public:
    NativePath() noexcept { m_bytes[0] = 0; }

    /// Takes `path` whole or fails: E_POINTER for null, 0x80070003 for other drives and servers,
    /// 0x8007007B for a character that the encoding lacks, 0x800700CE for a path longer than the
    /// system's bound. The empty path stays empty.
    ORVResult assign(const char16_t* path) noexcept;

    /// The path with its terminator, empty before assign() and after a failure.
    const char* get() const noexcept { return m_bytes; }

private:
    char m_bytes[PATH_MAX];
};

} // namespace orvcore
