#pragma once

#include "orv/Export.h"
#include "platform/orvcore.h"

#include <cstdint>
#include <type_traits>
#include <utility>

namespace orv {

/// The outcome of an interface operation: 0 or positive is success, negative is failure.
///
/// | Range | Meaning |
/// |---|---|
/// | 0x8000xxxx, 0x8004xxxx | general failures |
/// | 0x8007xxxx | a native error in the low 16 bits |
/// | 0x8BB3xxxx | character sets |
/// | 0x8BE3xxxx | sockets: 0x8BE30000 plus the native socket error |
using Result = std::int32_t;

/// Makes a result from the code as it is usually written.
constexpr Result makeResult(std::uint32_t code) noexcept
{
    return static_cast<Result>(code);
}

/// The thing asked for does not exist on this object or platform.
inline constexpr Result E_NOT_AVAILABLE = makeResult(0x80004007u);
/// The caller's buffer is too small; the required size is given back where the signature allows.
inline constexpr Result E_BUFFER_TOO_SMALL = makeResult(0x80004009u);
/// A key, value or file was not found.
inline constexpr Result E_NOT_FOUND = makeResult(0x80070002u);
/// The end of the file.
inline constexpr Result E_END_OF_FILE = makeResult(0x80070026u);
/// The thing to be made exists already.
inline constexpr Result E_ALREADY_EXISTS = makeResult(0x800700B7u);
/// A wait timed out.
inline constexpr Result E_TIMED_OUT = makeResult(0x800705B4u);
/// A byte sequence or a surrogate that forms no character.
inline constexpr Result E_INVALID_CHARACTER = makeResult(0x8BB34101u);
/// A character that the encoding cannot carry.
inline constexpr Result E_UNMAPPABLE_CHARACTER = makeResult(0x8BB34102u);
/// An encoding name that no codec answers to.
inline constexpr Result E_UNKNOWN_ENCODING = makeResult(0x8BB34103u);

/// Whether `result` is a failure.
constexpr bool failed(Result result) noexcept
{
    return result < 0;
}

/// The result of the exception being handled: `getResult()` of an Exception, E_OUTOFMEMORY of any
/// other std::bad_alloc, else E_FAIL. The unwinding of a cancelled thread passes on. To be called
/// within a catch clause only.
ORV_API Result resultOfCurrentException();

/// Runs `body` as an interface operation does: S_OK, or the result of what it threw. A body that
/// gives a Result itself decides over what is not thrown.
///
///     Result GetSize(std::int32_t* out) override
///     {
///         *out = 0;
///         return resultOf([&] { *out = getSize(); });
///     }
template <class Body>
Result resultOf(Body&& body)
{
    try {
        if constexpr (std::is_same_v<std::invoke_result_t<Body>, Result>) {
            return std::forward<Body>(body)();
        } else {
            std::forward<Body>(body)();
            return S_OK;
        }
    } catch (...) {
        return resultOfCurrentException();
    }
}

} // namespace orv
