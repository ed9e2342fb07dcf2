#pragma once

#include "orv/Exception.h"

/// \file
/// The exceptions without anything of their own. Each can be built with and without a description
/// and copied; the ones below ExternalException take no description. Their result is E_FAIL.

namespace orv {

/// compareTo() received an object of another class, or a checked cast failed.
class ORV_API CastFailedException : public Exception {
public:
    using Exception::Exception;
    ~CastFailedException() noexcept(false) override;
};

/// No class is registered under the name or for the type; the description is the name.
class ORV_API ClassNotFoundException : public Exception {
public:
    using Exception::Exception;
    ~ClassNotFoundException() noexcept(false) override;
};

/// Object::clone() on a class that has none of its own.
class ORV_API CloneNotSupportedException : public Exception {
public:
    using Exception::Exception;
    ~CloneNotSupportedException() noexcept(false) override;
};

/// Class::createInstance() of a class that has no factory.
class ORV_API IllegalAccessException : public Exception {
public:
    using Exception::Exception;
    ~IllegalAccessException() noexcept(false) override;
};

/// An operation that the present state does not allow.
class ORV_API IllegalStateException : public Exception {
public:
    using Exception::Exception;
    ~IllegalStateException() noexcept(false) override;
};

/// A path whose syntax is wrong.
class ORV_API InvalidPathException : public Exception {
public:
    using Exception::Exception;
    ~InvalidPathException() noexcept(false) override;
};

/// An index or a conversion out of its range.
class ORV_API RangeErrorException : public Exception {
public:
    using Exception::Exception;
    ~RangeErrorException() noexcept(false) override;
};

/// A write to a read-only buffer or collection.
class ORV_API ReadOnlyException : public Exception {
public:
    using Exception::Exception;
    ~ReadOnlyException() noexcept(false) override;
};

/// An operation that this object does not offer.
class ORV_API UnsupportedOperationException : public Exception {
public:
    using Exception::Exception;
    ~UnsupportedOperationException() noexcept(false) override;
};

/// A read or write of memory that is not there.
class ORV_API AccessViolationException : public ExternalException {
public:
    AccessViolationException() = default;
    ~AccessViolationException() noexcept(false) override;
};

/// An index past an array, found by the hardware.
class ORV_API ArrayBoundsException : public ExternalException {
public:
    ArrayBoundsException() = default;
    ~ArrayBoundsException() noexcept(false) override;
};

/// An instruction that the processor does not know.
class ORV_API IllegalInstructionException : public ExternalException {
public:
    IllegalInstructionException() = default;
    ~IllegalInstructionException() noexcept(false) override;
};

/// A failure of integer arithmetic.
class ORV_API IntErrorException : public ExternalException {
public:
    IntErrorException() = default;
    ~IntErrorException() noexcept(false) override;
};

/// An integer division by zero.
class ORV_API IntDivByZeroException : public IntErrorException {
public:
    IntDivByZeroException() = default;
    ~IntDivByZeroException() noexcept(false) override;
};

/// An integer overflow.
class ORV_API IntOverflowException : public IntErrorException {
public:
    IntOverflowException() = default;
    ~IntOverflowException() noexcept(false) override;
};

/// A failure of floating-point arithmetic.
class ORV_API MathErrorException : public ExternalException {
public:
    MathErrorException() = default;
    ~MathErrorException() noexcept(false) override;
};

/// A floating-point division by zero.
class ORV_API MathDivByZeroException : public MathErrorException {
public:
    MathDivByZeroException() = default;
    ~MathDivByZeroException() noexcept(false) override;
};

/// An invalid floating-point operation.
class ORV_API MathInvalidOpException : public MathErrorException {
public:
    MathInvalidOpException() = default;
    ~MathInvalidOpException() noexcept(false) override;
};

/// A floating-point overflow.
class ORV_API MathOverflowException : public MathErrorException {
public:
    MathOverflowException() = default;
    ~MathOverflowException() noexcept(false) override;
};

/// A floating-point underflow.
class ORV_API MathUnderflowException : public MathErrorException {
public:
    MathUnderflowException() = default;
    ~MathUnderflowException() noexcept(false) override;
};

/// The stack has run out.
class ORV_API StackOverflowException : public ExternalException {
public:
    StackOverflowException() = default;
    ~StackOverflowException() noexcept(false) override;
};

/// The user broke off, as by Ctrl-C at the masked console.
class ORV_API UserAbortException : public ExternalException {
public:
    UserAbortException() = default;
    ~UserAbortException() noexcept(false) override;
};

} // namespace orv
