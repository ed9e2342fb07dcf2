#pragma once

#include "tools/orv/Arguments.h"

#include "orv/io/PrintWriter.h"

#include <span>

namespace tool {

/// One subcommand of the program.
struct Command {
    const char16_t* name;
    const char16_t* summary; ///< one line for the list of commands
    const char16_t* usage;   ///< what stands behind `orv NAME`, and what it means
    std::span<const char16_t* const> options;
    std::int32_t words; ///< words without a switch that the command takes at most
    /// Does the work, printing results to `out`. Throws UsageError, Failure, or what the library
    /// throws.
    void (*run)(const Arguments& arguments, orv::io::PrintWriter& out);
};

extern const Command about;
extern const Command alphanum;
extern const Command calc;
extern const Command cipher;
extern const Command classes;
extern const Command component;
extern const Command connect;
extern const Command convert;
extern const Command digest;
extern const Command echo;
extern const Command encodings;
extern const Command ini;
extern const Command log;
extern const Command registry;
extern const Command resolve;
extern const Command bundleText;
extern const Command uri;

} // namespace tool
