#pragma once

#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"
#include "orv/text/charset/CharsetExceptions.h"

#include "fuzz/judges/SlowConverters.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <type_traits>

/// \file
/// What the fuzzers of decoders and encoders share. The first four bytes of an input say which
/// encoding, which substitution and how to cut; the text follows.

namespace orv::fuzz {

using test::Outcome;

inline void require(bool holds)
{
    if (!holds) std::abort();
}

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
    const std::vector<In> in(reinterpret_cast<const In*>(source.data()),
                             reinterpret_cast<const In*>(source.data()) + to);
    std::vector<Out> produced(room);
    std::int32_t written = 0;
    Outcome end = Outcome::stop;
    try {
        converter.convert(in.data(), &from, static_cast<std::int32_t>(to), produced.data(),
                          &written, static_cast<std::int32_t>(room));
    } catch (const text::charset::InvalidCharacterException&) {
        end = Outcome::invalid;
    } catch (const text::charset::UnmappableCharacterException&) {
        end = Outcome::unmappable;
    }
    require(written >= 0 && static_cast<std::size_t>(written) <= room && from >= 0);
    using Element = typename Text::value_type;
    out.append(reinterpret_cast<const Element*>(produced.data()),
               static_cast<std::size_t>(written));
    return end;
}

} // namespace orv::fuzz
