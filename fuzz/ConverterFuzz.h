#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/CharsetExceptions.h"

#include "fuzz/judges/SlowConverters.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// \file
/// What every decoder and encoder must do, against the slow ones, for the fuzzers and the tests.

namespace orv::fuzz {

using test::Outcome;
using text::charset::ByteToCharConverter;
using text::charset::CharToByteConverter;

/// Ends a fuzzer, and fails a test.
inline void require(bool holds, int line = __builtin_LINE())
{
    if (!holds) throw std::logic_error("what line " + std::to_string(line) + " requires");
}

/// The first four bytes of an input say which encoding, which substitution and how to cut; the text
/// follows.
struct Plan {
    const test::SlowEncoding* encoding;
    test::Substitution substitution;
    std::uint32_t cuts; ///< state of the generator of sizes

    explicit Plan(const std::uint8_t* data)
        : encoding(&test::slowEncodings[data[0] % std::size(test::slowEncodings)]),
          cuts(data[2] * 256u + data[3] + 1u)
    {
        constexpr const char16_t* units[] = {u"\uFFFD", u"", u"ab", u"xyz"};
        constexpr const char* bytes[] = {"?", "", "<>", "123456"};
        substitution = {(data[1] & 4) == 0, units[data[1] % 4], bytes[data[1] % 4]};
    }

    std::size_t size(std::size_t bound)
    {
        cuts = cuts * 1664525u + 1013904223u;
        return (cuts >> 8) % bound;
    }

    void prepare(ByteToCharConverter& decoder) const
    {
        decoder.setSubstitutionMode(substitution.on);
        decoder.setSubstitutionChars(substitution.units.data(),
                                     static_cast<std::int32_t>(substitution.units.size()));
    }
    void prepare(CharToByteConverter& encoder) const
    {
        const auto* const bytes = reinterpret_cast<const signed char*>(substitution.bytes.data());
        encoder.setSubstitutionMode(substitution.on);
        encoder.setSubstitutionBytes(bytes, static_cast<std::int32_t>(substitution.bytes.size()));
        encoder.reset();
    }
};

/// One convert() call from `from` up to `to`, onto the end of `out`, with `room` elements free.
template <class Converter, class Source, class Text>
Outcome convertOnce(Converter& converter, const Source& source, std::int32_t& from, std::size_t to,
                    Text& out, std::size_t room)
{
    constexpr bool encodes = std::is_same_v<Text, std::string>;
    using In = std::conditional_t<encodes, char16_t, signed char>;
    using Out = std::conditional_t<encodes, signed char, char16_t>;
    // Blocks of their exact size, so that the address sanitizer sees a step past an end.
    const auto* const start = reinterpret_cast<const In*>(source.data());
    const std::vector<In> in(start, start + to);
    std::vector<Out> produced(out.begin(), out.end());
    produced.resize(out.size() + room);
    const std::int32_t fromBefore = from;
    const auto before = static_cast<std::int32_t>(out.size());
    std::int32_t written = before;
    Outcome end = Outcome::stop;
    try {
        const std::int32_t result =
            converter.convert(in.data(), &from, static_cast<std::int32_t>(to), produced.data(),
                              &written, static_cast<std::int32_t>(produced.size()));
        const bool countsUnits =
            encodes && std::u16string_view(converter.getEncodingName()).starts_with(u"UTF-16");
        require(result == (countsUnits ? from - fromBefore : written - before));
    } catch (const text::charset::InvalidCharacterException&) {
        end = Outcome::invalid;
    } catch (const text::charset::UnmappableCharacterException&) {
        end = Outcome::unmappable;
    }
    require(written >= before && static_cast<std::size_t>(written) <= produced.size());
    require(from >= fromBefore);
    out.assign(produced.begin(), produced.begin() + written);
    return end;
}

/// One call gives what the slow decoder gives, and a failure comes again without a step aside.
inline void checkOneCall(ByteToCharConverter& decoder, Plan& plan, std::string_view bytes)
{
    const std::size_t room = plan.size(2 * bytes.size() + 8);
    const auto expected = test::slowDecode(plan.encoding->decoder, bytes, room, plan.substitution);
    std::u16string out;
    std::int32_t from = 0;
    const Outcome end = convertOnce(decoder, bytes, from, bytes.size(), out, room);
    require(end == expected.end);
    require(static_cast<std::size_t>(from) == expected.consumed);
    require(out == expected.out);
    if (end == Outcome::stop) return;
    require(convertOnce(decoder, bytes, from, bytes.size(), out, 8) == end);
    require(static_cast<std::size_t>(from) == expected.consumed && out == expected.out);
}

/// Pieces add up to what one call gives. Returns the bytes consumed; all unless there is a failure
/// behind them, or a sequence that the end cuts.
inline std::size_t checkPieces(ByteToCharConverter& decoder, Plan& plan, std::string_view bytes)
{
    const std::size_t word = plan.encoding->wordSize;
    const auto whole = test::slowDecode(plan.encoding->decoder, bytes, 1 << 20, plan.substitution);
    std::u16string pieces;
    std::int32_t at = 0;
    std::size_t end = 0;
    Outcome outcome = Outcome::stop;
    while (outcome == Outcome::stop &&
           (end < bytes.size() || static_cast<std::size_t>(at) < whole.consumed)) {
        end = std::min(bytes.size(), end + plan.size(70) / word * word);
        if (bytes.size() - end < word) end = bytes.size();
        outcome = convertOnce(decoder, bytes, at, end, pieces, plan.size(50));
    }
    if (outcome == Outcome::stop && whole.end != Outcome::stop) {
        outcome = convertOnce(decoder, bytes, at, bytes.size(), pieces, 8);
    }
    require(outcome == whole.end);
    require(static_cast<std::size_t>(at) == whole.consumed);
    require(pieces == whole.out);
    return outcome == Outcome::stop ? bytes.size() : whole.consumed;
}

inline void check(ByteToCharConverter& decoder, Plan& plan, std::string_view bytes)
{
    plan.prepare(decoder);
    checkOneCall(decoder, plan, bytes);
    while (!bytes.empty()) {
        const std::size_t consumed = checkPieces(decoder, plan, bytes);
        bytes.remove_prefix(std::min(bytes.size(), consumed + plan.encoding->wordSize));
    }
}

inline void checkFlush(CharToByteConverter& encoder, bool pending)
{
    signed char out[8];
    std::int32_t to = 0;
    bool thrown = false;
    try {
        require(encoder.flush(out, &to, 8) == 0);
    } catch (const text::charset::InvalidCharacterException&) {
        thrown = true;
    }
    require(thrown == pending && to == 0);
}

inline void checkOneCall(CharToByteConverter& encoder, Plan& plan, std::u16string_view units)
{
    const std::size_t room = plan.size(5 * units.size() + 8);
    char16_t pending = 0;
    const auto expected =
        test::slowEncode(plan.encoding->encoder, units, room, plan.substitution, pending);
    std::string out;
    std::int32_t from = 0;
    const Outcome end = convertOnce(encoder, units, from, units.size(), out, room);
    require(end == expected.end);
    require(static_cast<std::size_t>(from) == expected.consumed);
    require(out == expected.out);
    checkFlush(encoder, pending != 0);
    checkFlush(encoder, pending != 0);
}

/// An encoder that remembers a leading surrogate and not its bytes loses the pair for want of room,
/// so room is ample where there are surrogates.
inline void checkPieces(CharToByteConverter& encoder, Plan& plan, std::u16string_view units)
{
    const bool scarce =
        std::none_of(units.begin(), units.end(), test::leads) || encoder.getMaxBytesPerChar() == 8;
    encoder.reset();
    char16_t pending = 0;
    const auto whole =
        test::slowEncode(plan.encoding->encoder, units, 1 << 24, plan.substitution, pending);
    std::string pieces;
    std::int32_t at = 0;
    std::size_t end = 0;
    Outcome outcome = Outcome::stop;
    while (outcome == Outcome::stop &&
           (end < units.size() || static_cast<std::size_t>(at) < whole.consumed)) {
        end = std::min(units.size(), end + plan.size(70));
        const std::size_t ample = 8 * (end - static_cast<std::size_t>(at)) + 8;
        outcome = convertOnce(encoder, units, at, end, pieces, scarce ? plan.size(60) : ample);
    }
    if (outcome == Outcome::stop && whole.end != Outcome::stop) {
        outcome = convertOnce(encoder, units, at, end, pieces, 16);
    }
    require(outcome == whole.end);
    require(static_cast<std::size_t>(at) == whole.consumed);
    require(pieces == whole.out);
    checkFlush(encoder, pending != 0);
}

inline void check(CharToByteConverter& encoder, Plan& plan, std::u16string_view units)
{
    plan.prepare(encoder);
    checkOneCall(encoder, plan, units);
    checkPieces(encoder, plan, units);
}

} // namespace orv::fuzz
