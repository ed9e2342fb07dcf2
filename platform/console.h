#pragma once

#include "platform/orvcore.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

/// \file
/// The standard streams of the process and the keyboard of its terminal.

namespace orvcore {

/// Reads one key without echo: 13 for Enter, 8 for backspace and the terminal's erase key, 3 for
/// Ctrl-C, 26 for Ctrl-Z and at the end of input. The terminal's mode is restored before the
/// return. Without a terminal the bytes of standard input are taken as they are.
ORVCORE_API std::int32_t readKey() noexcept;

/// Standard input as a file handle, which stays open.
ORVCORE_API ORVHandle standardInput() noexcept;

/// Standard output as a file handle, which stays open.
ORVCORE_API ORVHandle standardOutput() noexcept;

/// The file behind a stream of the C library, which stays the stream's; ORV_NO_HANDLE for none.
ORVCORE_API ORVHandle fileHandleFromStream(std::FILE* stream) noexcept;

/// Whether standard error is a terminal.
ORVCORE_API bool isErrorTerminal() noexcept;

} // namespace orvcore
