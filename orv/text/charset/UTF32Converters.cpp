#include "orv/text/charset/UTF32Converters.h"

#include "orv/text/charset/internal/ByteOrder.h"
#include "orv/text/charset/internal/InByteOrder.h"
#include "orv/text/charset/internal/Run.h"
#include "orv/text/charset/internal/Surrogates.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace orv::text::charset {

using internal::DecoderRun;
using internal::EncoderRun;
using internal::isSurrogate;
using internal::ordered;

namespace {

constexpr std::ptrdiff_t WORD = 4;
constexpr std::ptrdiff_t BLOCK = 32;

/// 0 for the values of one unit that are no surrogates.
constexpr std::uint32_t notPlain(std::uint32_t value)
{
    return (value >> 16) | std::uint32_t{(value & 0xF800u) == 0xD800};
}

/// Decodes blocks that hold nothing but characters of one unit.
template <class Order>
void takeBlocks(DecoderRun& run, Order order)
{
    auto left = std::min(run.inLeft() / WORD, run.outLeft());
    for (; left >= BLOCK; left -= BLOCK, run.in += WORD * BLOCK, run.out += BLOCK) {
        std::uint32_t words[BLOCK];
        std::memcpy(words, run.in, sizeof words);
        // Loops apart, because only so do compilers make vectors of them.
        for (std::uint32_t& word : words) word = order(word);
        std::uint32_t bad = 0;
        for (const std::uint32_t word : words) bad |= notPlain(word);
        if (bad != 0) return;
        char16_t units[BLOCK];
        for (std::ptrdiff_t i = 0; i < BLOCK; ++i) units[i] = static_cast<char16_t>(words[i]);
        std::memcpy(run.out, units, sizeof units);
    }
}

/// Encodes blocks without surrogates.
template <class Order>
void takeBlocks(EncoderRun& run, Order order)
{
    auto left = std::min(run.inLeft(), run.outLeft() / WORD);
    for (; left >= BLOCK; left -= BLOCK, run.in += BLOCK, run.out += WORD * BLOCK) {
        std::uint16_t bad = 0;
        for (std::ptrdiff_t i = 0; i < BLOCK; ++i) bad |= isSurrogate(run.in[i]);
        if (bad != 0) return;
        std::uint32_t words[BLOCK];
        for (std::ptrdiff_t i = 0; i < BLOCK; ++i) words[i] = order(std::uint32_t{run.in[i]});
        std::memcpy(run.out, words, sizeof words);
    }
}

constexpr auto littleEndian = [](std::uint32_t word) { return ordered<std::endian::little>(word); };
constexpr auto bigEndian = [](std::uint32_t word) { return ordered<std::endian::big>(word); };

constexpr std::array<signed char, 6> substitution{static_cast<signed char>(0xFD),
                                                  static_cast<signed char>(0xFF), 0, 0};

} // namespace

// Decoders

BTCUTF32::~BTCUTF32() noexcept(false) = default;

bool BTCUTF32::store(DecoderRun& run, std::uint32_t value)
{
    if (run.full()) return false;
    if (value < 0x10000) {
        if (isSurrogate(value)) internal::throwInvalid(u"Illegal UTF-32 char in surrogate range");
        *run.out++ = static_cast<char16_t>(value);
        return true;
    }
    if (value > 0x10FFFF) {
        if (!m_substitutionMode) internal::throwUnmappable();
        if (run.outLeft() <= m_substitutionLength) return false;
        run.out = std::copy_n(m_substitution.begin(), m_substitutionLength, run.out);
        return true;
    }
    if (run.outLeft() < 2) return false;
    *run.out++ = internal::leadingOf(value);
    *run.out++ = internal::trailingOf(value);
    return true;
}

template <class Order>
std::int32_t BTCUTF32::convertWords(DecoderRun&& run, Order order)
{
    while (run.inLeft() >= WORD) {
        takeBlocks(run, order);
        for (std::ptrdiff_t i = 0; i < BLOCK && run.inLeft() >= WORD; ++i, run.in += WORD) {
            const auto word = internal::loadWord<std::uint32_t>(run.in);
            if (!store(run, order(word))) return run.written();
        }
    }
    if (run.exhausted()) return run.written();

    std::uint32_t word = 0;
    std::memcpy(&word, run.in, static_cast<std::size_t>(run.inLeft()));
    if (store(run, order(word))) {
        run.inBeyond = static_cast<std::int32_t>(WORD - run.inLeft());
        run.in = run.inEnd;
    }
    return run.written();
}

std::int32_t BTCUTF32::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd},
                        [this](std::uint32_t word) { return convertUTF32(word); });
}

BTCUTF32LE::~BTCUTF32LE() noexcept(false) = default;

std::int32_t BTCUTF32LE::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd}, littleEndian);
}

const char16_t* BTCUTF32LE::getEncodingName() const
{
    return u"UTF-32LE";
}

BTCUTF32BE::~BTCUTF32BE() noexcept(false) = default;

std::int32_t BTCUTF32BE::convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd}, bigEndian);
}

const char16_t* BTCUTF32BE::getEncodingName() const
{
    return u"UTF-32BE";
}

// Encoders

CTBUTF32::~CTBUTF32() noexcept(false) = default;

template <class Order>
std::int32_t CTBUTF32::convertWords(EncoderRun&& run, Order order)
{
    while (!run.exhausted() && run.outLeft() >= WORD) {
        if (m_leading == 0) takeBlocks(run, order);
        for (std::ptrdiff_t i = 0; i < BLOCK && !run.exhausted() && run.outLeft() >= WORD; ++i) {
            const char16_t unit = *run.in;
            std::uint32_t value = unit;
            if (m_leading != 0) {
                if (!internal::isTrailing(unit)) internal::throwLoneLeading();
                value = internal::combined(m_leading, unit);
                m_leading = 0;
            } else if (internal::isLeading(unit)) {
                m_leading = unit;
                ++run.in;
                continue;
            }
            internal::storeWord(run.out, order(value));
            run.out += WORD;
            ++run.in;
        }
    }
    return run.written();
}

std::int32_t CTBUTF32::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                               signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd},
                        [this](std::uint32_t value) { return convertUTF32(value); });
}

std::int32_t CTBUTF32::flush(signed char*, std::int32_t*, std::int32_t)
{
    if (m_leading != 0) internal::throwLoneLeading();
    return 0;
}

void CTBUTF32::reset()
{
    m_leading = 0;
}

CTBUTF32LE::CTBUTF32LE() noexcept
{
    m_substitution = substitution;
    m_substitutionLength = 4;
}

CTBUTF32LE::~CTBUTF32LE() noexcept(false) = default;

std::int32_t CTBUTF32LE::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd}, littleEndian);
}

const char16_t* CTBUTF32LE::getEncodingName() const
{
    return u"UTF-32LE";
}

CTBUTF32BE::CTBUTF32BE() noexcept
{
    m_substitution = substitution;
    m_substitutionLength = 4;
}

CTBUTF32BE::~CTBUTF32BE() noexcept(false) = default;

std::int32_t CTBUTF32BE::convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                                 signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd)
{
    return convertWords({src, srcPos, srcEnd, dst, dstPos, dstEnd}, bigEndian);
}

const char16_t* CTBUTF32BE::getEncodingName() const
{
    return u"UTF-32BE";
}

template class InByteOrder<BTCUTF32, std::endian::little>;
template class InByteOrder<BTCUTF32, std::endian::big>;
template class InByteOrder<CTBUTF32, std::endian::little>;
template class InByteOrder<CTBUTF32, std::endian::big>;

} // namespace orv::text::charset
