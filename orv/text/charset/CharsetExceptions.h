#pragma once

#include "orv/Exception.h"

namespace orv::text::charset {

/// Bytes or surrogates that form no character.
class ORV_API InvalidCharacterException : public Exception {
public:
    using Exception::Exception;
    ~InvalidCharacterException() noexcept(false) override;

    /// E_INVALID_CHARACTER.
    Result getResult() const override;
};

/// A character that the encoding lacks, with substitution off.
class ORV_API UnmappableCharacterException : public Exception {
public:
    using Exception::Exception;
    ~UnmappableCharacterException() noexcept(false) override;

    /// E_UNMAPPABLE_CHARACTER.
    Result getResult() const override;
};

/// No codec answers to the name, which is the description.
class ORV_API UnknownEncodingException : public Exception {
public:
    using Exception::Exception;
    ~UnknownEncodingException() noexcept(false) override;

    /// E_UNKNOWN_ENCODING.
    Result getResult() const override;
};

} // namespace orv::text::charset
