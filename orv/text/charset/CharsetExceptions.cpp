#include "orv/text/charset/CharsetExceptions.h"

namespace orv::text::charset {

InvalidCharacterException::~InvalidCharacterException() noexcept(false) = default;

Result InvalidCharacterException::getResult() const
{
    return E_INVALID_CHARACTER;
}

UnmappableCharacterException::~UnmappableCharacterException() noexcept(false) = default;

Result UnmappableCharacterException::getResult() const
{
    return E_UNMAPPABLE_CHARACTER;
}

UnknownEncodingException::~UnknownEncodingException() noexcept(false) = default;

Result UnknownEncodingException::getResult() const
{
    return E_UNKNOWN_ENCODING;
}

} // namespace orv::text::charset
