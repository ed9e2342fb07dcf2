#pragma once

#include "components/icodec/CodePages.h"
#include "components/icodec/Sequence.h"

#include <memory>

namespace orv::components::icodec {

/// Where the tables of an encoding come from, a sequence at a time.
///
/// Threads: one at a time.
class CharacterSource {
public:
    virtual ~CharacterSource() = default;

    /// What the `n` bytes are together: a character, or nothing, with `n` as consumed; or the
    /// beginning of a longer sequence, with 0.
    virtual Step decode(const signed char* bytes, std::uint8_t n) = 0;

    /// The bytes of a character. A surrogate has none.
    virtual Sequence encode(char16_t unit) = 0;
};

/// The source for a code page. Throws ResultException: E_UNKNOWN_ENCODING where iconv does not know
/// the encoding, else the system's reason.
std::unique_ptr<CharacterSource> openSource(const CodePage& page);

} // namespace orv::components::icodec
