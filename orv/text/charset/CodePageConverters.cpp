#include "orv/text/charset/CodePageConverters.h"

#include "orv/text/charset/internal/CodePageTables.h"
#include "orv/text/charset/internal/Run.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;

namespace {

/// Takes elements one to one as long as `map` gives anything but `nothing` for them; where it does,
/// `isGood` of the element has the last word. Look-ups come four at a time, because a store of
/// bytes makes the compiler read everything anew.
template <class Run, class Out, class Map, class IsGood>
void takeMapped(Run& run, Out nothing, Map map, IsGood isGood)
{
    const auto* in = run.in;
    Out* out = run.out;
    std::ptrdiff_t left = std::min(run.inLeft(), run.outLeft());
    for (; left >= 4; left -= 4, in += 4, out += 4) {
        const Out a = map(in[0]);
        const Out b = map(in[1]);
        const Out c = map(in[2]);
        const Out d = map(in[3]);
        if (a == nothing || b == nothing || c == nothing || d == nothing) break;
        out[0] = a;
        out[1] = b;
        out[2] = c;
        out[3] = d;
    }
    for (; left > 0; --left, ++in) {
        const Out mapped = map(*in);
        if (mapped == nothing && !isGood(*in)) break;
        *out++ = mapped;
    }
    run.in = in;
    run.out = out;
}

/// A two-level table laid out flat, up to and with the first unit behind the last one that has a
/// byte. One look-up instead of two doubles the speed of the code pages of the library itself.
template <std::size_t size>
constexpr std::array<signed char, size> flattened(const std::int32_t* offsets,
                                                  const unsigned char* bytes)
{
    std::array<signed char, size> flat{};
    for (std::size_t unit = 0; unit < size; ++unit) {
        flat[unit] = static_cast<signed char>(
            bytes[static_cast<std::size_t>(offsets[unit >> 8]) + (unit & 0xFF)]);
    }
    return flat;
}

template <std::size_t count>
constexpr std::size_t flatSize(const char16_t (&units)[count])
{
    char16_t last = 0;
    for (const char16_t unit : units) {
        if (unit != u'\uFFFD') last = std::max(last, unit);
    }
    return last + 2u;
}

constexpr auto cp437Flat =
    flattened<flatSize(internal::cp437Units)>(internal::cp437Offsets, internal::cp437Bytes);
constexpr auto cp1252Flat =
    flattened<flatSize(internal::cp1252Units)>(internal::cp1252Offsets, internal::cp1252Bytes);

template <std::size_t size>
void takeFlat(EncoderRun& run, const std::array<signed char, size>& flat)
{
    takeMapped(
        run, static_cast<signed char>(0),
        [&flat](char16_t unit) { return flat[std::min<std::size_t>(unit, size - 1)]; },
        [](char16_t unit) { return unit == 0; });
}

} // namespace

BTCSingleByteTable::~BTCSingleByteTable() noexcept(false) = default;

std::int32_t BTCSingleByteTable::convert(const signed char* src, std::int32_t* srcPos,
                                         std::int32_t srcEnd, char16_t* dst, std::int32_t* dstPos,
                                         std::int32_t dstEnd)
{
    DecoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        takeMapped(
            run, u'\uFFFD',
            [table = m_table](signed char byte) { return table[static_cast<unsigned char>(byte)]; },
            [](signed char) { return false; });
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

const char16_t* BTCSingleByteTable::getEncodingName() const
{
    return m_name;
}

char16_t BTCSingleByteTable::convertByte(signed char byte)
{
    return m_table[static_cast<unsigned char>(byte)];
}

CTBSingleByteTable::~CTBSingleByteTable() noexcept(false) = default;

std::int32_t CTBSingleByteTable::convert(const char16_t* src, std::int32_t* srcPos,
                                         std::int32_t srcEnd, signed char* dst,
                                         std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        if (!isPending()) {
            takeMapped(
                run, static_cast<signed char>(0),
                [offsets = m_offsets, bytes = m_bytes](char16_t unit) {
                    return static_cast<signed char>(bytes[offsets[unit >> 8] + (unit & 0xFF)]);
                },
                [](char16_t unit) { return unit == 0; });
        }
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

const char16_t* CTBSingleByteTable::getEncodingName() const
{
    return m_name;
}

signed char CTBSingleByteTable::convertChar(char16_t unit)
{
    return static_cast<signed char>(m_bytes[m_offsets[unit >> 8] + (unit & 0xFF)]);
}

BTCCP437::BTCCP437() noexcept : BTCSingleByteTable(u"CP437", internal::cp437Units) {}

BTCCP437::~BTCCP437() noexcept(false) = default;

CTBCP437::CTBCP437() noexcept
    : CTBSingleByteTable(u"CP437", internal::cp437Offsets, internal::cp437Bytes)
{
}

CTBCP437::~CTBCP437() noexcept(false) = default;

std::int32_t CTBCP437::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        if (!isPending()) takeFlat(run, cp437Flat);
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

BTCCP1252::BTCCP1252() noexcept : BTCSingleByteTable(u"CP1252", internal::cp1252Units) {}

BTCCP1252::~BTCCP1252() noexcept(false) = default;

CTBCP1252::CTBCP1252() noexcept
    : CTBSingleByteTable(u"CP1252", internal::cp1252Offsets, internal::cp1252Bytes)
{
}

CTBCP1252::~CTBCP1252() noexcept(false) = default;

std::int32_t CTBCP1252::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    EncoderRun run(src, srcPos, srcEnd, dst, dstPos, dstEnd);
    do {
        if (!isPending()) takeFlat(run, cp1252Flat);
    } while (!run.exhausted() && convertOne(run));
    return run.written();
}

} // namespace orv::text::charset
