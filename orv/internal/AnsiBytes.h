#pragma once

#include "orv/String.h"

#include <memory>

namespace orv {

/// The bytes that a String keeps for getBytes(), with the name of their encoding.
class String::AnsiBytes : public util::RWByteBuffer {
public:
    /// Holds no bytes yet. Copies the name; null, the default encoding, stays null.
    explicit AnsiBytes(const char16_t* encoding);
    /// Copies the bytes and takes the name from `other`, which then counts as the default.
    AnsiBytes(AnsiBytes& other);
    AnsiBytes& operator=(AnsiBytes& other);
    ~AnsiBytes() noexcept(false) override;

    /// Whether the bytes are of this encoding: names compare without regard to ASCII case, null
    /// equals null only.
    bool encodingEquals(const char16_t* encoding) const;

private:
    std::unique_ptr<char16_t[]> m_encoding;
};

} // namespace orv
