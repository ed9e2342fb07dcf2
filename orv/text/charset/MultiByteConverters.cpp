#include "orv/text/charset/MultiByteConverters.h"

#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"

#include <algorithm>

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;

BTCMultiByte::~BTCMultiByte() noexcept(false) = default;

std::int32_t BTCMultiByte::convert(const signed char* src, std::int32_t* srcPos,
                                   std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                   std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    while (!run.exhausted()) {
        const auto available = static_cast<std::int32_t>(run.inLeft());
        std::int32_t consumed = available;
        const std::uint32_t code = convertBytes(run.in, consumed);
        if (consumed <= 0) break;

        if (code != 0xFFFD && code < 0x110000) {
            if (run.full()) break;
            if (internal::isSurrogate(code)) {
                internal::throwInvalid(u"Invalid byte sequence (decoded chars in surrogate range)");
            }
            if (code < 0x10000) {
                *run.out++ = static_cast<char16_t>(code);
            } else {
                if (run.outLeft() < 2) break;
                *run.out++ = internal::leadingOf(code);
                *run.out++ = internal::trailingOf(code);
            }
        } else {
            if (!m_substitutionMode) internal::throwUnmappable();
            if (run.outLeft() < m_substitutionLength) break;
            run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
        }
        run.in += std::min(consumed, available);
    }
    return run.written();
}

std::int32_t BTCMultiByte::flush(char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    if (m_pending == 0) return 0;
    if (dstEnd - *dstPos < 2) {
        internal::throwInvalid(u"Not enough room in buffer for trailing surrogate");
    }
    dst[*dstPos] = m_pending;
    return 1;
}

void BTCMultiByte::reset()
{
    m_pending = 0;
}

const char16_t* BTCMultiByte::getEncodingName() const
{
    return m_name.getData();
}

std::int32_t BTCMultiByte::getMaxBytesPerChar() const
{
    return m_maxBytesPerChar;
}

std::int32_t BTCMultiByte::getMaxCharsPerByte() const
{
    return m_maxCharsPerByte;
}

CTBMultiByte::~CTBMultiByte() noexcept(false) = default;

std::int32_t CTBMultiByte::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                   signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    constexpr std::int32_t MOST_BYTES = 6;

    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    for (; !run.exhausted(); ++run.in) {
        const char16_t unit = *run.in;
        std::uint32_t code = unit;
        if (m_leading != 0) {
            if (!internal::isTrailing(unit)) internal::throwLoneLeading();
            code = internal::combined(m_leading, unit);
            m_leading = 0;
        }
        signed char bytes[MOST_BYTES];
        std::int32_t count = std::min(convertChar(code, bytes, MOST_BYTES), MOST_BYTES);
        if (count > 0) {
            if (run.outLeft() < count) break;
            run.out = std::copy_n(bytes, count, run.out);
        } else if (internal::isLeading(unit)) {
            m_leading = unit;
        } else {
            if (internal::isTrailing(unit)) internal::throwLoneTrailing();
            if (!m_substitutionMode) internal::throwUnmappable();
            if (run.outLeft() < m_substitutionLength) break;
            run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
        }
    }
    return run.written();
}

std::int32_t CTBMultiByte::flush(signed char*, std::int32_t*, std::int32_t)
{
    if (m_leading != 0) internal::throwLoneLeading();
    return 0;
}

void CTBMultiByte::reset()
{
    m_leading = 0;
}

const char16_t* CTBMultiByte::getEncodingName() const
{
    return m_name.getData();
}

std::int32_t CTBMultiByte::getMaxBytesPerChar() const
{
    return m_maxBytesPerChar;
}

std::int32_t CTBMultiByte::getMaxCharsPerByte() const
{
    return m_maxCharsPerByte;
}

} // namespace orv::text::charset
