#include "orv/text/charset/UTFConverters.h"

#include "orv/text/charset/internal/ByteOrder.h"
#include "orv/text/charset/internal/Run.h"

#include <algorithm>

namespace orv::text::charset {

ByteToCharUTF::~ByteToCharUTF() noexcept(false) = default;

std::int32_t ByteToCharUTF::flush(char16_t*, std::int32_t*, std::int32_t)
{
    return 0;
}

std::int32_t ByteToCharUTF::getMaxBytesPerChar() const
{
    return 4;
}

std::int32_t ByteToCharUTF::getMaxCharsPerByte() const
{
    return 4;
}

std::int32_t ByteToCharUTF::sameEncodingConvert(const signed char* src, std::int32_t* srcPos,
                                                std::int32_t srcEnd, char16_t* dst,
                                                std::int32_t* dstPos, std::int32_t dstEnd)
{
    internal::DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    for (auto left = std::min(run.inLeft() / 2, run.outLeft()); left > 0; --left, run.in += 2) {
        *run.out++ = convertUTF16(internal::loadWord<std::uint16_t>(run.in));
    }
    return run.written();
}

CharToByteUTF::~CharToByteUTF() noexcept(false) = default;

std::int32_t CharToByteUTF::getMaxBytesPerChar() const
{
    return 4;
}

std::int32_t CharToByteUTF::getMaxCharsPerByte() const
{
    return 4;
}

std::int32_t CharToByteUTF::sameEncodingConvert(const char16_t* src, std::int32_t* srcPos,
                                                std::int32_t srcEnd, signed char* dst,
                                                std::int32_t* dstPos, std::int32_t dstEnd)
{
    internal::EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    for (auto left = std::min(run.inLeft(), run.outLeft() / 2); left > 0; --left, run.out += 2) {
        internal::storeWord(run.out, convertUTF16(*run.in++));
    }
    return run.written() / 2;
}

} // namespace orv::text::charset
