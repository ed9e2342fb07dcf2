#include "orv/text/charset/internal/Surrogates.h"

#include "orv/String.h"
#include "orv/text/charset/CharsetExceptions.h"

namespace orv::text::charset::internal {

void throwLoneLeading()
{
    throwInvalid(u"leading surrogate without trailing");
}

void throwLoneTrailing()
{
    throwInvalid(u"trailing surrogate without leading");
}

void throwInvalid(const char16_t* words)
{
    throw InvalidCharacterException(String(words));
}

void throwUnmappable()
{
    throw UnmappableCharacterException();
}

} // namespace orv::text::charset::internal
