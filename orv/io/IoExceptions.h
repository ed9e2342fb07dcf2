#pragma once

#include "orv/Exception.h"

namespace orv::io {

/// A stream failed; the description says how. The result is E_FAIL.
class ORV_API IoException : public Exception {
public:
    using Exception::Exception;
    ~IoException() noexcept(false) override;
};

/// A stream did not answer in time.
class ORV_API TimeoutException : public IoException {
public:
    using IoException::IoException;
    ~TimeoutException() noexcept(false) override;
};

/// A stream ended within a value. It is no IoException.
class ORV_API UnexpectedEOFException : public Exception {
public:
    using Exception::Exception;
    ~UnexpectedEOFException() noexcept(false) override;
};

} // namespace orv::io
