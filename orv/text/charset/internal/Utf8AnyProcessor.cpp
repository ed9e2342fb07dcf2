#include "orv/text/charset/internal/Utf8Kernels.h"

namespace orv::text::charset::internal {

DecoderStop decodeUtf8(const signed char* in, const signed char* inEnd, char16_t* out,
                       char16_t* outEnd)
{
    return decodeUtf8Portably(in, inEnd, out, outEnd);
}

EncoderStop encodeUtf8(const char16_t* in, const char16_t* inEnd, signed char* out,
                       signed char* outEnd)
{
    return encodeUtf8Portably(in, inEnd, out, outEnd);
}

} // namespace orv::text::charset::internal
