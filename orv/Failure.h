#pragma once

#include "orv/Export.h"
#include "orv/Result.h"

/// \file
/// Throwing without the exception classes, for code below them.

namespace orv {

/// Throws ResultException with `result` and no description.
[[noreturn]] ORV_API void throwResult(Result result);

/// Throws OutOfMemoryException, which is a std::bad_alloc too. Allocates nothing of the library's.
[[noreturn]] ORV_API void throwOutOfMemory();

/// Throws ReadOnlyException without description.
[[noreturn]] ORV_API void throwReadOnly();

/// Throws RangeErrorException without description.
[[noreturn]] ORV_API void throwRange();

/// Throws CastFailedException without description.
[[noreturn]] ORV_API void throwCastFailed();

/// Throws CloneNotSupportedException without description.
[[noreturn]] ORV_API void throwCloneNotSupported();

/// Throws ClassNotFoundException described by `name`.
[[noreturn]] ORV_API void throwClassNotFound(const char16_t* name);

/// Throws IllegalAccessException without description.
[[noreturn]] ORV_API void throwIllegalAccess();

/// Throws a plain Exception described by `text`.
[[noreturn]] ORV_API void throwException(const char16_t* text);

/// Throws ResultException if `result` is a failure; returns it otherwise.
inline Result throwIfFailed(Result result)
{
    if (failed(result)) throwResult(result);
    return result;
}

} // namespace orv
