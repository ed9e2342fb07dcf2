#pragma once

#include "orv/Failure.h"
#include "orv/String.h"

namespace orv::i18n::internal {

/// Copies `text` into a buffer of a caller's. Throws ResultException: what the buffer fails with,
/// and E_POINTER for null.
inline void copyText(const String& text, util::ICharBuffer* buffer)
{
    if (buffer == nullptr) throwResult(E_POINTER);
    // Copying only reads its source.
    ORVCopyCharBuffer(buffer, const_cast<String*>(&text));
}

} // namespace orv::i18n::internal
