#pragma once

#include "orv/io/InputStream.h"

namespace orv::io {

/// Reads what is typed at the console without showing it, as a password.
///
/// Without a terminal it reads the bytes of the standard input.
class ORV_API MaskedConsoleInputStream : public InputStream {
public:
    ~MaskedConsoleInputStream() noexcept(false) override;

    using InputStream::read;

    /// Reads keys until `n` bytes are there, up to Enter, which is stored as a line feed and
    /// counted, or up to Ctrl-Z, which is not. Backspace takes the last key back. Returns how many
    /// bytes were stored, -1 for none. Ctrl-C throws UserAbortException.
    std::int32_t read(signed char* buffer, std::int32_t n) override;
};

} // namespace orv::io
