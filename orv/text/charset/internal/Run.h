#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orv::text::charset::internal {

/// The input and output of one convert() call as pointers. Whichever way the call ends, also by an
/// exception, the caller's positions are brought up to date.
template <class In, class Out>
class Run {
public:
    Run(const In* src, std::int32_t* srcPos, std::int32_t srcEnd, Out* dst, std::int32_t* dstPos,
        std::int32_t dstEnd) noexcept
        : in(src + *srcPos), inEnd(in + std::max(srcEnd - *srcPos, 0)), out(dst + *dstPos),
          outEnd(out + std::max(dstEnd - *dstPos, 0)), m_src(src), m_dst(dst), m_start(*dstPos),
          m_srcPos(srcPos), m_dstPos(dstPos)
    {
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;
    ~Run()
    {
        *m_srcPos = static_cast<std::int32_t>(in - m_src) + inBeyond;
        *m_dstPos = static_cast<std::int32_t>(out - m_dst);
    }

    std::ptrdiff_t inLeft() const noexcept { return inEnd - in; }
    std::ptrdiff_t outLeft() const noexcept { return outEnd - out; }
    bool exhausted() const noexcept { return in == inEnd; }
    bool full() const noexcept { return out == outEnd; }

    /// Goes on with a kernel (Utf8Kernels.h); whether the input is exhausted then.
    template <class Kernel>
    bool takenBy(Kernel kernel)
    {
        const auto stop = kernel(in, inEnd, out, outEnd);
        in = stop.in;
        out = stop.out;
        return exhausted();
    }

    /// Elements written so far: what convert() returns.
    std::int32_t written() const noexcept
    {
        return static_cast<std::int32_t>(out - m_dst) - m_start;
    }

    const In* in;
    const In* const inEnd;
    Out* out;
    Out* const outEnd;
    std::int32_t inBeyond = 0; ///< elements past the end that count as read

private:
    const In* const m_src;
    Out* const m_dst;
    const std::int32_t m_start;
    std::int32_t* const m_srcPos;
    std::int32_t* const m_dstPos;
};

/// A whole convert() call by a kernel (Utf8Kernels.h); whether the input is exhausted then. Most
/// calls end here, without the price of a Run, which lives in memory.
template <class Kernel, class In, class Out>
inline bool convertedBy(Kernel kernel, const In* src, std::int32_t* srcPos, std::int32_t srcEnd,
                        Out* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    const In* const in = src + *srcPos;
    const In* const inEnd = in + std::max(srcEnd - *srcPos, 0);
    Out* const out = dst + *dstPos;
    const auto stop = kernel(in, inEnd, out, out + std::max(dstEnd - *dstPos, 0));
    *srcPos += static_cast<std::int32_t>(stop.in - in);
    *dstPos += static_cast<std::int32_t>(stop.out - out);
    return stop.in == inEnd;
}

using DecoderRun = Run<signed char, char16_t>;
using EncoderRun = Run<char16_t, signed char>;

} // namespace orv::text::charset::internal
