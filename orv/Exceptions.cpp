#include "orv/Exceptions.h"

namespace orv {

CastFailedException::~CastFailedException() noexcept(false) = default;
ClassNotFoundException::~ClassNotFoundException() noexcept(false) = default;
CloneNotSupportedException::~CloneNotSupportedException() noexcept(false) = default;
IllegalAccessException::~IllegalAccessException() noexcept(false) = default;
IllegalStateException::~IllegalStateException() noexcept(false) = default;
InvalidPathException::~InvalidPathException() noexcept(false) = default;
RangeErrorException::~RangeErrorException() noexcept(false) = default;
ReadOnlyException::~ReadOnlyException() noexcept(false) = default;
UnsupportedOperationException::~UnsupportedOperationException() noexcept(false) = default;
AccessViolationException::~AccessViolationException() noexcept(false) = default;
ArrayBoundsException::~ArrayBoundsException() noexcept(false) = default;
IllegalInstructionException::~IllegalInstructionException() noexcept(false) = default;
IntErrorException::~IntErrorException() noexcept(false) = default;
IntDivByZeroException::~IntDivByZeroException() noexcept(false) = default;
IntOverflowException::~IntOverflowException() noexcept(false) = default;
MathErrorException::~MathErrorException() noexcept(false) = default;
MathDivByZeroException::~MathDivByZeroException() noexcept(false) = default;
MathInvalidOpException::~MathInvalidOpException() noexcept(false) = default;
MathOverflowException::~MathOverflowException() noexcept(false) = default;
MathUnderflowException::~MathUnderflowException() noexcept(false) = default;
StackOverflowException::~StackOverflowException() noexcept(false) = default;
UserAbortException::~UserAbortException() noexcept(false) = default;

} // namespace orv
