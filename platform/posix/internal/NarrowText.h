#pragma once

#include "platform/orvcore.h"

#include <cstddef>

/// \file
/// Text on its way to and from the system, in the default encoding.

namespace orvcore {

/// Name of the default encoding; valid until the environment or the locale changes.
const char* defaultEncodingName() noexcept;

/// Converts single characters to the default encoding, as it stands when the object is made. An
/// encoding that the system does not know, or whose ASCII is not that of ASCII, counts as UTF-8.
class NarrowEncoder {
public:
    NarrowEncoder() noexcept;
    ~NarrowEncoder();
    NarrowEncoder(const NarrowEncoder&) = delete;
    NarrowEncoder& operator=(const NarrowEncoder&) = delete;

    /// Room that encode() wants.
    static constexpr std::size_t maxBytes = 16;

    /// Takes the character at `*text`, which is not the terminator, moves behind it and writes its
    /// bytes to `out`. Returns their number, 0 for a character that has none.
    std::size_t encode(const char16_t** text, char* out) noexcept;

private:
    void* m_converter; ///< null for UTF-8
};

/// Converts the whole of `text` or fails: 0x8007007B for a character without bytes, 0x800700CE
/// when `size` bytes with the terminator are too few.
ORVResult narrowExactly(const char16_t* text, char* out, std::size_t size) noexcept;

/// Converts `bytes` to units with a terminator. Returns the length, -1 for bytes that are no text
/// and when `size` units are too few.
std::int32_t widenExactly(const char* bytes, char16_t* out, std::int32_t size) noexcept;

/// A text in the default encoding that is as long as it needs to be.
class NarrowText {
public:
    NarrowText() noexcept = default;
    ~NarrowText();
    NarrowText(const NarrowText&) = delete;
    NarrowText& operator=(const NarrowText&) = delete;

    /// Takes the whole of `text`, which is not null, or fails as narrowExactly() does.
    ORVResult assign(const char16_t* text) noexcept;

    /// The text with its terminator, empty before assign().
    const char* get() const noexcept { return m_bytes; }

private:
    char m_short[256] = "";
    char* m_bytes = m_short;
};

} // namespace orvcore
