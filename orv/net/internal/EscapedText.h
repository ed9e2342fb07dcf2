#pragma once

#include "orv/String.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// \file
/// The escapes of URIs: "%" and two hexadecimal digits for each byte of a text in UTF-8.

namespace orv::net::internal {

/// Room for bytes, on the stack where they are few.
class ByteRoom {
public:
    ByteRoom() noexcept = default;
    ByteRoom(const ByteRoom&) = delete;
    ByteRoom& operator=(const ByteRoom&) = delete;

    /// Room for `bytes`. Throws OutOfMemoryException where there is none.
    signed char* make(std::size_t bytes);

private:
    signed char m_short[1024];
    util::RWByteBuffer m_long;
};

/// The bytes of a text in UTF-8. Throws InvalidCharacterException for a text that ends in half a
/// surrogate pair.
class Utf8Bytes {
public:
    explicit Utf8Bytes(std::u16string_view text);

    signed char* data() noexcept { return m_data; }
    const signed char* data() const noexcept { return m_data; }
    std::size_t length() const noexcept { return m_length; }

private:
    ByteRoom m_room;
    signed char* m_data;
    std::size_t m_length;
};

/// A text in the form in which a URI holds it, which is known by its length before it is written.
class EscapedText {
public:
    /// With `escape` the text, which stays the caller's, is escaped for `part`, a value of
    /// URI::ESCAPE_PART; else it is taken as it stands.
    EscapedText(std::u16string_view text, std::int32_t part, bool escape);
    EscapedText(const EscapedText&) = delete;
    EscapedText& operator=(const EscapedText&) = delete;

    std::size_t length() const noexcept { return m_length; }

    /// Writes that many units.
    void write(char16_t* out) const noexcept;

private:
    std::u16string_view m_text;
    std::int32_t m_part;
    std::size_t m_length;
    std::optional<Utf8Bytes> m_bytes; ///< of a text that gets escaped and is not all ASCII
};

/// The text that `text`, which holds escapes, stands for. Throws an Exception without description
/// where fewer than two bytes follow a "%".
String unescaped(std::u16string_view text);

} // namespace orv::net::internal
