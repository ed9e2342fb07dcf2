#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// The encodings once more, element by element and without any thought of speed: judges for the
/// converters. Each step function looks at the start of the input, with `room` elements free in the
/// output, and says what has to happen there.

namespace orv::test {

enum class Outcome {
    done,       ///< emit and consume
    stop,       ///< nothing more can be done
    invalid,    ///< InvalidCharacterException
    unmappable, ///< UnmappableCharacterException
};

template <class Text>
struct Step {
    Outcome outcome = Outcome::stop;
    std::size_t consumed = 0;
    Text emitted{};
};

struct Substitution {
    bool on = true;
    std::u16string units = u"\uFFFD";
    std::string bytes = "?";
};

using DecoderStep = Step<std::u16string>;
using EncoderStep = Step<std::string>;
using SlowDecoder = DecoderStep (*)(std::string_view rest, std::size_t room, const Substitution&);
using SlowEncoder = EncoderStep (*)(std::u16string_view rest, std::size_t room, const Substitution&,
                                    char16_t& pending);

// Decoders

inline std::u16string unitsOf(std::uint32_t code)
{
    if (code < 0x10000) return {static_cast<char16_t>(code)};
    code -= 0x10000;
    return {static_cast<char16_t>(0xD800 + code / 0x400),
            static_cast<char16_t>(0xDC00 + code % 0x400)};
}

inline bool between(unsigned value, unsigned least, unsigned most)
{
    return value >= least && value <= most;
}

/// What becomes of a decoded value in UTF-8, UTF-32 and AMP-7.
inline DecoderStep emitCode(std::uint32_t code, std::size_t length, std::size_t room,
                            const Substitution& substitution)
{
    if (room == 0) return {};
    if (between(code, 0xD800, 0xDFFF)) return {Outcome::invalid};
    if (code > 0x10FFFF) {
        if (!substitution.on) return {Outcome::unmappable};
        if (substitution.units.size() >= room) return {};
        return {Outcome::done, length, substitution.units};
    }
    const std::u16string units = unitsOf(code);
    if (units.size() > room) return {};
    return {Outcome::done, length, units};
}

inline DecoderStep slowUtf8(std::string_view rest, std::size_t room,
                            const Substitution& substitution)
{
    const auto at = [rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    const unsigned first = at(0);
    std::size_t length = 1;
    if (between(first, 0xC2, 0xDF)) length = 2;
    if (between(first, 0xE0, 0xEF)) length = 3;
    if (between(first, 0xF0, 0xF4)) length = 4;
    if (length > rest.size()) return {};

    bool good = first < 0x80 || length > 1;
    for (std::size_t i = 1; i < length; ++i) {
        good = good && between(at(i), 0x80, length == 4 && i == 1 ? 0xAF : 0xBF);
    }
    if (!good) return emitCode(0xFFFD, 1, room, substitution);

    constexpr unsigned bitsOfFirst[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = first & bitsOfFirst[length];
    for (std::size_t i = 1; i < length; ++i) code = code << 6 | (at(i) & 0x3F);
    return emitCode(code, length, room, substitution);
}

template <bool big>
DecoderStep slowUtf16(std::string_view rest, std::size_t room, const Substitution&)
{
    if (rest.size() < 2 || room == 0) return {};
    const auto a = static_cast<unsigned char>(rest[big ? 0 : 1]);
    const auto b = static_cast<unsigned char>(rest[big ? 1 : 0]);
    return {Outcome::done, 2, {static_cast<char16_t>(a * 256 + b)}};
}

/// Counts the bytes missing in a last word as zeros, and as consumed.
template <bool big>
DecoderStep slowUtf32(std::string_view rest, std::size_t room, const Substitution& substitution)
{
    std::uint32_t code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::uint32_t byte = i < rest.size() ? static_cast<unsigned char>(rest[i]) : 0;
        code += byte << (8 * (big ? 3 - i : i));
    }
    return emitCode(code, 4, room, substitution);
}

inline DecoderStep malformedAmp7(std::size_t room, const Substitution& substitution)
{
    if (!substitution.on) return {Outcome::unmappable};
    if (substitution.units.size() >= room) return {};
    return {Outcome::done, 1, substitution.units + u'\uFFFD'};
}

inline DecoderStep slowAmp7(std::string_view rest, std::size_t room,
                            const Substitution& substitution)
{
    if (room == 0) return {};
    if (rest[0] != '&') {
        const auto byte = static_cast<unsigned char>(rest[0]);
        return byte < 0x80 ? emitCode(byte, 1, room, substitution)
                           : malformedAmp7(room, substitution);
    }
    struct Name {
        std::string_view text;
        std::uint32_t code;
    };
    for (const Name& name : {Name{"&AMP;", '&'}, {"&APOS;", '\''}, {"&QUOT;", '"'}}) {
        if (rest.substr(0, name.text.size()) == name.text) {
            return emitCode(name.code, name.text.size(), room, substitution);
        }
        if (rest.size() < name.text.size() && name.text.substr(0, rest.size()) == rest) return {};
    }
    if (rest.size() < 2 || rest[1] != '_') return malformedAmp7(room, substitution);
    const std::size_t end = rest.find_first_not_of("0123456789ABCDEFabcdef", 2);
    const std::size_t digits = (end == std::string_view::npos ? rest.size() : end) - 2;
    if (digits > 5) return malformedAmp7(room, substitution);
    if (end == std::string_view::npos) return {};
    if (rest[end] != ';') return malformedAmp7(room, substitution);
    const std::uint32_t code = digits == 0 ? 0
                                           : static_cast<std::uint32_t>(std::stoul(
                                                 std::string(rest.substr(2, digits)), nullptr, 16));
    if (code == 0xFFFD) return malformedAmp7(room, substitution);
    return emitCode(code, digits + 3, room, substitution);
}

/// One byte a character by a map that gives nothing for bytes without one.
inline DecoderStep slowSingleByte(std::optional<char16_t> unit, std::size_t room,
                                  const Substitution& substitution)
{
    if (!unit) {
        if (!substitution.on) return {Outcome::unmappable};
        if (substitution.units.size() != 1) return {Outcome::done, 1, u""};
        unit = substitution.units[0];
    }
    if (room == 0) return {};
    return {Outcome::done, 1, {*unit}};
}

inline DecoderStep slowAscii(std::string_view rest, std::size_t room,
                             const Substitution& substitution)
{
    const auto byte = static_cast<unsigned char>(rest[0]);
    return slowSingleByte(byte < 0x80 ? std::optional<char16_t>(byte) : std::nullopt, room,
                          substitution);
}

inline DecoderStep slowLatin1(std::string_view rest, std::size_t room,
                              const Substitution& substitution)
{
    const auto byte = static_cast<unsigned char>(rest[0]);
    return slowSingleByte(static_cast<char16_t>(byte < 0x80 ? byte : 0xFF00 + byte), room,
                          substitution);
}

/// The characters of 0x80 to 0xFF in code page 437, as published.
inline constexpr std::u16string_view upperCp437 =
    u"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒáíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄"
    u"▌▐▀"
    u"αßΓπΣσ\u00B5τΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0";
/// The characters of 0x80 to 0x9F in code page 1252, as published; U+FFFD where there is none.
inline constexpr std::u16string_view middleCp1252 =
    u"€\uFFFD‚ƒ„…†‡ˆ‰Š‹Œ\uFFFDŽ\uFFFD\uFFFD‘’“”•–—˜™š›œ\uFFFDžŸ";

inline std::optional<char16_t> unitOfCp437(unsigned char byte)
{
    return byte < 0x80 ? static_cast<char16_t>(byte) : upperCp437[byte - 0x80u];
}

inline std::optional<char16_t> unitOfCp1252(unsigned char byte)
{
    if (!between(byte, 0x80, 0x9F)) return byte;
    const char16_t unit = middleCp1252[byte - 0x80u];
    return unit == u'\uFFFD' ? std::nullopt : std::optional<char16_t>(unit);
}

template <std::optional<char16_t> (*unitOf)(unsigned char)>
DecoderStep slowCodePage(std::string_view rest, std::size_t room, const Substitution& substitution)
{
    return slowSingleByte(unitOf(static_cast<unsigned char>(rest[0])), room, substitution);
}

// Encoders

inline bool leads(char16_t unit)
{
    return between(unit, 0xD800, 0xDBFF);
}

inline bool trails(char16_t unit)
{
    return between(unit, 0xDC00, 0xDFFF);
}

inline std::uint32_t pairOf(char16_t leading, char16_t trailing)
{
    return 0x10000u + (leading - 0xD800u) * 0x400u + (trailing - 0xDC00u);
}

/// Bytes of `code` in the encoding that `print` writes, for those that keep a pending surrogate.
/// The pending surrogate is spent even where the bytes find no room.
template <std::string (*print)(std::uint32_t)>
EncoderStep slowPaired(std::u16string_view rest, std::size_t room, const Substitution&,
                       char16_t& pending)
{
    std::uint32_t code = rest[0];
    if (pending != 0) {
        if (!trails(rest[0])) return {Outcome::invalid};
        code = pairOf(pending, rest[0]);
        pending = 0;
    } else if (leads(rest[0])) {
        pending = rest[0];
        return {Outcome::done, 1};
    }
    const std::string bytes = print(code);
    if (bytes.size() > room) return {};
    return {Outcome::done, 1, bytes};
}

inline std::string printUtf8(std::uint32_t code)
{
    const auto byte = [](std::uint32_t value) { return static_cast<char>(value); };
    const auto tail = [&](int shift) { return byte(0x80 + (code >> shift) % 64); };
    if (code < 0x80) return {byte(code)};
    if (code < 0x800) return {byte(0xC0 + code / 64), tail(0)};
    if (code < 0x10000) return {byte(0xE0 + (code >> 12)), tail(6), tail(0)};
    return {byte(0xF0 + (code >> 18)), tail(12), tail(6), tail(0)};
}

template <bool big>
std::string printUtf32(std::uint32_t code)
{
    std::string bytes;
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(code >> (8 * (big ? 3 - i : i)));
    return bytes;
}

/// Looks at the room first, so that no pair is lost.
template <bool big>
EncoderStep slowUtf32Encoder(std::u16string_view rest, std::size_t room,
                             const Substitution& substitution, char16_t& pending)
{
    if (room < 4) return {};
    return slowPaired<printUtf32<big>>(rest, room, substitution, pending);
}

template <bool big>
EncoderStep slowUtf16Encoder(std::u16string_view rest, std::size_t room, const Substitution&,
                             char16_t&)
{
    if (room < 2) return {};
    const char high = static_cast<char>(rest[0] >> 8);
    const char low = static_cast<char>(rest[0] & 0xFF);
    return {Outcome::done, 1, big ? std::string{high, low} : std::string{low, high}};
}

inline EncoderStep slowAmp7Encoder(std::u16string_view rest, std::size_t room,
                                   const Substitution& substitution, char16_t&)
{
    std::uint32_t code = rest[0];
    std::size_t width = 1;
    if (leads(rest[0])) {
        if (rest.size() < 2) return {};
        if (!trails(rest[1])) return {Outcome::invalid};
        code = pairOf(rest[0], rest[1]);
        width = 2;
    }
    std::string bytes;
    if (code == '&') {
        bytes = "&AMP;";
    } else if (between(code, 0x20, 0x7E) || code == '\t' || code == '\n' || code == '\r') {
        bytes = static_cast<char>(code);
    } else if (code < 0xFFFFF) {
        for (; code != 0 || bytes.empty(); code /= 16) {
            bytes.insert(bytes.begin(), "0123456789ABCDEF"[code % 16]);
        }
        bytes = "&_" + bytes + ";";
    } else {
        if (!substitution.on) return {Outcome::unmappable};
        if (substitution.bytes.size() >= room) return {};
        bytes = substitution.bytes;
    }
    if (bytes.size() > room) return {};
    return {Outcome::done, width, bytes};
}

inline EncoderStep substituteByte(std::size_t room, const Substitution& substitution)
{
    if (!substitution.on) return {Outcome::unmappable};
    if (substitution.bytes.size() != 1) return {Outcome::done, 1, ""};
    if (room == 0) return {};
    return {Outcome::done, 1, substitution.bytes};
}

/// One byte a character, the first one whose unit is the one looked for.
template <std::optional<char16_t> (*unitOf)(unsigned char)>
EncoderStep slowCodePageEncoder(std::u16string_view rest, std::size_t room,
                                const Substitution& substitution, char16_t& pending)
{
    const char16_t unit = rest[0];
    if (pending != 0) {
        if (!trails(unit)) return {Outcome::invalid};
        pending = 0;
        return substituteByte(room, substitution);
    }
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (unitOf(static_cast<unsigned char>(byte)) != unit) continue;
        if (room == 0) return {};
        return {Outcome::done, 1, {static_cast<char>(byte)}};
    }
    if (trails(unit)) return {Outcome::invalid};
    if (!leads(unit)) return substituteByte(room, substitution);
    pending = unit;
    return {Outcome::done, 1};
}

inline std::optional<char16_t> unitOfAscii(unsigned char byte)
{
    return byte < 0x80 ? std::optional<char16_t>(byte) : std::nullopt;
}

inline std::optional<char16_t> unitOfLatin1(unsigned char byte)
{
    return byte;
}

// All of them

struct SlowEncoding {
    const char16_t* name;
    SlowDecoder decoder;
    SlowEncoder encoder;
    std::size_t wordSize; ///< bytes that pieces of input must not be cut within
};

inline constexpr SlowEncoding slowEncodings[] = {
    {u"ASCII", slowAscii, slowCodePageEncoder<unitOfAscii>, 1},
    {u"ISO8859_1", slowLatin1, slowCodePageEncoder<unitOfLatin1>, 1},
    {u"CP437", slowCodePage<unitOfCp437>, slowCodePageEncoder<unitOfCp437>, 1},
    {u"CP1252", slowCodePage<unitOfCp1252>, slowCodePageEncoder<unitOfCp1252>, 1},
    {u"UTF-8", slowUtf8, slowPaired<printUtf8>, 1},
    {u"UTF-16LE", slowUtf16<false>, slowUtf16Encoder<false>, 1},
    {u"UTF-16BE", slowUtf16<true>, slowUtf16Encoder<true>, 1},
    {u"UTF-32LE", slowUtf32<false>, slowUtf32Encoder<false>, 4},
    {u"UTF-32BE", slowUtf32<true>, slowUtf32Encoder<true>, 4},
    {u"AMP-7", slowAmp7, slowAmp7Encoder, 1},
};

/// What one convert() call gives.
template <class Text>
struct Converted {
    std::size_t consumed = 0;
    Text out{};
    Outcome end = Outcome::stop; ///< stop also stands for the end of the input

    bool operator==(const Converted&) const = default;
};

inline Converted<std::u16string> slowDecode(SlowDecoder decoder, std::string_view bytes,
                                            std::size_t room, const Substitution& substitution)
{
    Converted<std::u16string> result;
    while (result.consumed < bytes.size()) {
        const DecoderStep step =
            decoder(bytes.substr(result.consumed), room - result.out.size(), substitution);
        result.end = step.outcome;
        if (step.outcome != Outcome::done) return result;
        result.consumed += step.consumed;
        result.out += step.emitted;
    }
    result.end = Outcome::stop;
    return result;
}

inline Converted<std::string> slowEncode(SlowEncoder encoder, std::u16string_view units,
                                         std::size_t room, const Substitution& substitution,
                                         char16_t& pending)
{
    Converted<std::string> result;
    while (result.consumed < units.size()) {
        const EncoderStep step =
            encoder(units.substr(result.consumed), room - result.out.size(), substitution, pending);
        result.end = step.outcome;
        if (step.outcome != Outcome::done) return result;
        result.consumed += step.consumed;
        result.out += step.emitted;
    }
    result.end = Outcome::stop;
    return result;
}

} // namespace orv::test
