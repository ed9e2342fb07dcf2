#pragma once

#include "orv/String.h"
#include "orv/util/CommandLineParser.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tool {

/// What a command line got wrong. The program prints it and ends with status 2.
struct UsageError {
    orv::String text;
};

/// What went wrong in a command. The program prints it with its result and ends with status 1.
struct Failure {
    orv::String text;
    orv::Result result;
};

/// The options and words behind a command's name.
class Arguments {
public:
    /// Reads the words after the command's name. An option that is not among `known` or, but for
    /// `words` of them, a word without a switch throws UsageError.
    Arguments(int count, char** words, std::span<const char16_t* const> known,
              std::int32_t wordCount);

    /// Whether the option stands on the command line.
    bool has(const char16_t* name) const;

    /// The value of the option, as it is. Throws UsageError where it is absent or empty.
    orv::String text(const char16_t* name) const;

    /// The values of the option in their order, as often as it is given, perhaps never. Throws
    /// UsageError where one is empty.
    std::vector<orv::String> texts(const char16_t* name) const;

    /// What stands behind the "=" of the option, perhaps nothing. Throws UsageError where the
    /// option is absent or has no "=".
    orv::String verbatim(const char16_t* name) const;

    /// The value of the option as a whole decimal number between `least` and `most`.
    std::int32_t number(const char16_t* name, std::int32_t least, std::int32_t most) const;

    /// The word at `index`. Throws UsageError, saying that `what` is missing.
    orv::String word(std::int32_t index, const char16_t* what) const;

private:
    std::span<char* const> m_words;
    orv::util::CommandLineParser m_parser;
};

} // namespace tool
