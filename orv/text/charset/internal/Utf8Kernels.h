#pragma once

#include <cstddef>
#include <cstdint>

/// \file
/// The fast ways through UTF-8, for text that is in order.
///
/// Each kernel takes whole characters from the start of the input and stops at the latest before
/// the first element that is out of order or does not fit: a malformed or cut sequence, a surrogate
/// in bytes, a lone surrogate, a value outside of Unicode. It may stop earlier. The converters deal
/// with one such element by their full rules and call again.
///
/// With 32 elements of room and more, a kernel may use the room behind what it has written as
/// scratch space.

namespace orv::text::charset::internal {

/// Where a kernel has stopped.
template <class In, class Out>
struct Stop {
    const In* in;
    Out* out;
};

using DecoderStop = Stop<signed char, char16_t>;
using EncoderStop = Stop<char16_t, signed char>;

/// The fastest kernels for this processor.
DecoderStop decodeUtf8(const signed char* in, const signed char* inEnd, char16_t* out,
                       char16_t* outEnd);
EncoderStop encodeUtf8(const char16_t* in, const char16_t* inEnd, signed char* out,
                       signed char* outEnd);

/// The kernels for any processor; they stop once they have taken `most` elements or a few more.
DecoderStop decodeUtf8Portably(const signed char* in, const signed char* inEnd, char16_t* out,
                               char16_t* outEnd, std::ptrdiff_t most = PTRDIFF_MAX);
EncoderStop encodeUtf8Portably(const char16_t* in, const char16_t* inEnd, signed char* out,
                               signed char* outEnd, std::ptrdiff_t most = PTRDIFF_MAX);

} // namespace orv::text::charset::internal
