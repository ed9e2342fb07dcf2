#pragma once

#include "orv/text/charset/MultiByteConverters.h"
#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"

#include <algorithm>

/// \file
/// convert() of the multi-byte converters. `plain` may move the run past characters that need no
/// decision, `hook` is asked for the one after.

namespace orv::text::charset {

template <class Plain, class Hook>
std::int32_t BTCMultiByte::convertBy(Plain plain, Hook hook, const signed char* src,
                                     std::int32_t* srcPos, std::int32_t srcEnd, char16_t* dst,
                                     std::int32_t* dstPos, std::int32_t dstEnd)
{
    internal::DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    while (plain(run), !run.exhausted()) {
        const auto available = static_cast<std::int32_t>(run.inLeft());
        std::int32_t consumed = available;
        const std::uint32_t code = hook(run.in, consumed);
        if (consumed <= 0) break;

        if (code != 0xFFFD && run.full()) break;
        if (code < 0x10000 && code != 0xFFFD) {
            if (internal::isSurrogate(code)) {
                internal::throwInvalid(u"Invalid byte sequence (decoded chars in surrogate range)");
            }
            *run.out++ = static_cast<char16_t>(code);
        } else if (code < 0x110000 && code != 0xFFFD) {
            if (run.outLeft() < 2) break;
            *run.out++ = internal::leadingOf(code);
            *run.out++ = internal::trailingOf(code);
        } else {
            if (!m_substitutionMode) internal::throwUnmappable();
            if (run.outLeft() < m_substitutionLength) break;
            run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
        }
        run.in += std::min(consumed, available);
    }
    return run.written();
}

template <class Plain, class Hook>
std::int32_t CTBMultiByte::convertBy(Plain plain, Hook hook, const char16_t* src,
                                     std::int32_t* srcPos, std::int32_t srcEnd, signed char* dst,
                                     std::int32_t* dstPos, std::int32_t dstEnd)
{
    constexpr std::int32_t MOST_BYTES = 6;

    internal::EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    for (;; ++run.in) {
        if (m_leading == 0) plain(run);
        if (run.exhausted()) break;
        const char16_t unit = *run.in;
        std::uint32_t code = unit;
        if (m_leading != 0) {
            if (!internal::isTrailing(unit)) internal::throwLoneLeading();
            code = internal::combined(m_leading, unit);
            m_leading = 0;
        }
        signed char bytes[MOST_BYTES];
        const std::int32_t count = std::min(hook(code, bytes, MOST_BYTES), MOST_BYTES);
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

} // namespace orv::text::charset
