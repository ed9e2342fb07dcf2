#include "orv/Reference.h"
#include "tests/orv/text/charset/Converting.h"

#include <algorithm>
#include <random>

namespace orv::text::charset {
namespace {

using test::Converted;
using test::Outcome;
using test::SlowEncoding;
using test::Substitution;

/// One convert() call of `converter` from `from` up to `to`, onto the end of `out`.
template <class Converter, class Source, class Text>
Outcome convertOnce(Converter& converter, const Source& source, std::int32_t& from, std::size_t to,
                    Text& out, std::size_t room)
{
    using In = std::conditional_t<std::is_same_v<Text, std::string>, char16_t, signed char>;
    using Out = std::conditional_t<std::is_same_v<Text, std::string>, signed char, char16_t>;
    auto written = static_cast<std::int32_t>(out.size());
    const std::int32_t before = written;
    const std::int32_t from0 = from;
    out.resize(out.size() + room);
    Outcome end = Outcome::stop;
    try {
        const std::int32_t result = converter.convert(
            reinterpret_cast<const In*>(source.data()), &from, static_cast<std::int32_t>(to),
            reinterpret_cast<Out*>(out.data()), &written, static_cast<std::int32_t>(out.size()));
        const bool encodesUtf16 =
            std::is_same_v<Text, std::string> &&
            std::u16string_view(converter.getEncodingName()).starts_with(u"UTF-16");
        EXPECT_EQ(result, encodesUtf16 ? from - from0 : written - before);
    } catch (const InvalidCharacterException&) {
        end = Outcome::invalid;
    } catch (const UnmappableCharacterException&) {
        end = Outcome::unmappable;
    }
    EXPECT_GE(written, before);
    EXPECT_GE(from, from0);
    out.resize(static_cast<std::size_t>(written));
    return end;
}

/// Random texts in pieces that are likely to matter.
class Texts {
public:
    explicit Texts(unsigned seed) : m_random(seed) {}

    std::size_t below(std::size_t limit)
    {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }

    std::u16string units()
    {
        std::u16string text;
        for (std::size_t pieces = below(8); pieces > 0; --pieces) {
            const std::size_t kind = below(9);
            for (std::size_t length = 1 + below(below(3) == 0 ? 60 : 4); length > 0; --length) {
                text += test::unitsOf(character(kind));
            }
        }
        return text;
    }

    std::string bytes(const SlowEncoding& encoding)
    {
        std::string text;
        for (std::size_t pieces = below(8); pieces > 0; --pieces) {
            if (below(3) == 0) {
                for (std::size_t n = 1 + below(6); n > 0; --n)
                    text += static_cast<char>(below(256));
            } else if (below(3) == 0) {
                text += specialties[below(std::size(specialties))];
            } else {
                char16_t pending = 0;
                std::string piece =
                    slowEncode(encoding.encoder, units(), 1000, Substitution{}, pending).out;
                if (below(4) == 0) piece.resize(below(piece.size() + 1));
                text += piece;
            }
        }
        return text;
    }

    Substitution substitution()
    {
        switch (below(4)) {
        case 0: return {false, u"\uFFFD", "?"};
        case 1: return {true, u"", ""};
        case 2: return {true, u"ab", "<>"};
        default: return {};
        }
    }

private:
    static constexpr std::string_view specialties[] = {"\xED\xA0\x80",
                                                       "\xE0\x80\x80",
                                                       "\xF0\x8D\xA0\x80",
                                                       "\xF4\x90\x80\x80",
                                                       "\xF0\xB0\x80\x80",
                                                       "\xF4\xAF\xBF\xBF",
                                                       "\xF5",
                                                       "\xC0\x80",
                                                       "\xC2",
                                                       "\xE2\x82",
                                                       "&_",
                                                       "&_;",
                                                       "&_e9;",
                                                       "&_D800;",
                                                       "&_FFFD;",
                                                       "&_12345;",
                                                       "&_123456;",
                                                       "&AM",
                                                       "&APOS;",
                                                       "&QUOT;",
                                                       "&amp;",
                                                       "&_FFFFF;"};

    std::uint32_t character(std::size_t kind)
    {
        const auto in = [this](std::uint32_t least, std::uint32_t most) {
            return least + static_cast<std::uint32_t>(below(most - least + 1));
        };
        switch (kind) {
        case 0:
        case 1: return in(0x20, 0x7E);
        case 2: return in(0, 0xFF);
        case 3: return in(0x80, 0x7FF);
        case 4: return in(0x800, 0xD7FF);
        case 5: return in(0x10000, 0x10FFFF);
        case 6: return in(0, 1) == 0 ? in(0xD800, 0xDFFF) : in(0xE000, 0xFFFF);
        case 7: return in(0, 0x3000);
        default: return in(0, 1) == 0 ? in(0x20, 0x7E) : in(0x10000, 0x10FFFF);
        }
    }

    std::mt19937 m_random;
};

void apply(const Substitution& substitution, ByteToCharConverter& decoder)
{
    decoder.setSubstitutionMode(substitution.on);
    decoder.setSubstitutionChars(substitution.units.data(),
                                 static_cast<std::int32_t>(substitution.units.size()));
}

void apply(const Substitution& substitution, CharToByteConverter& encoder)
{
    encoder.setSubstitutionMode(substitution.on);
    encoder.setSubstitutionBytes(reinterpret_cast<const signed char*>(substitution.bytes.data()),
                                 static_cast<std::int32_t>(substitution.bytes.size()));
}

class Converters : public testing::TestWithParam<SlowEncoding> {
protected:
    ~Converters() noexcept override = default;

    Reference<ByteToCharConverter> decoder{ByteToCharConverter::getConverter(GetParam().name)};
    Reference<CharToByteConverter> encoder{CharToByteConverter::getConverter(GetParam().name)};
    Texts texts{7};
    static constexpr int ROUNDS = 700;
};

TEST_P(Converters, decodeAsTheSlowOnesDo)
{
    for (int round = 0; round < ROUNDS; ++round) {
        const std::string bytes = texts.bytes(GetParam());
        const Substitution substitution = texts.substitution();
        apply(substitution, *decoder);
        const std::size_t room = texts.below(2 * bytes.size() + 4);
        const auto expected = slowDecode(GetParam().decoder, bytes, room, substitution);

        Converted<std::u16string> got;
        std::int32_t from = 0;
        got.end = convertOnce(*decoder, bytes, from, bytes.size(), got.out, room);
        got.consumed = static_cast<std::size_t>(from);
        ASSERT_EQ(got.consumed, expected.consumed) << round;
        ASSERT_EQ(got.out, expected.out) << round;
        ASSERT_EQ(got.end, expected.end) << round;
        if (got.end == Outcome::stop) continue;

        // Without a step aside the same failure comes again.
        std::u16string none;
        ASSERT_EQ(convertOnce(*decoder, bytes, from, bytes.size(), none, 10), expected.end);
        ASSERT_EQ(static_cast<std::size_t>(from), expected.consumed);
        ASSERT_EQ(none, u"");
    }
}

TEST_P(Converters, encodeAsTheSlowOnesDo)
{
    for (int round = 0; round < ROUNDS; ++round) {
        const std::u16string units = texts.units();
        const Substitution substitution = texts.substitution();
        apply(substitution, *encoder);
        encoder->reset();
        const std::size_t room = texts.below(8 * units.size() + 4);
        char16_t pending = 0;
        const auto expected = slowEncode(GetParam().encoder, units, room, substitution, pending);

        Converted<std::string> got;
        std::int32_t from = 0;
        got.end = convertOnce(*encoder, units, from, units.size(), got.out, room);
        got.consumed = static_cast<std::size_t>(from);
        ASSERT_EQ(got.consumed, expected.consumed) << round;
        ASSERT_EQ(got.out, expected.out) << round;
        ASSERT_EQ(got.end, expected.end) << round;

        signed char none[4];
        std::int32_t written = 0;
        if (pending == 0) {
            ASSERT_EQ(encoder->flush(none, &written, 4), 0);
        } else {
            ASSERT_THROW(encoder->flush(none, &written, 4), InvalidCharacterException);
            ASSERT_THROW(encoder->flush(none, &written, 4), InvalidCharacterException);
        }
        ASSERT_EQ(written, 0);
    }
}

TEST_P(Converters, decodePiecesToTheSameAsTheWhole)
{
    for (int round = 0; round < ROUNDS; ++round) {
        const std::string bytes = texts.bytes(GetParam());
        const Substitution substitution = texts.substitution();
        apply(substitution, *decoder);

        std::u16string whole, pieces;
        std::size_t from = 0, end = 0;
        std::int32_t at = 0;
        for (;;) {
            const auto step = slowDecode(GetParam().decoder, std::string_view(bytes).substr(from),
                                         10000, substitution);
            whole += step.out;
            from += step.consumed;

            Outcome outcome = Outcome::stop;
            while (static_cast<std::size_t>(at) < from ||
                   (outcome == Outcome::stop && end < bytes.size())) {
                const std::size_t more = texts.below(20) / GetParam().wordSize;
                end = std::min(bytes.size(), end + more * GetParam().wordSize);
                if (bytes.size() - end < GetParam().wordSize) end = bytes.size();
                outcome = convertOnce(*decoder, bytes, at, end, pieces, texts.below(12));
                if (outcome != Outcome::stop) break;
            }
            if (outcome == Outcome::stop && step.end != Outcome::stop) {
                outcome = convertOnce(*decoder, bytes, at, bytes.size(), pieces, 10);
            }
            ASSERT_EQ(outcome, step.end) << round;
            ASSERT_EQ(static_cast<std::size_t>(at), from) << round;
            ASSERT_EQ(pieces, whole) << round;
            if (step.end == Outcome::stop) break;
            from += GetParam().wordSize;
            if (from > bytes.size()) break;
            at = static_cast<std::int32_t>(from);
            end = std::max(end, from);
        }
    }
}

TEST_P(Converters, encodePiecesToTheSameAsTheWhole)
{
    for (int round = 0; round < ROUNDS; ++round) {
        const std::u16string units = texts.units();
        const Substitution substitution = texts.substitution();
        apply(substitution, *encoder);
        encoder->reset();
        char16_t pending = 0;
        const auto whole = slowEncode(GetParam().encoder, units, 10000, substitution, pending);

        // Those that remember a leading surrogate and not the bytes lose a pair for want of room.
        const bool losesPairs = std::any_of(units.begin(), units.end(), test::leads) &&
                                encoder->getMaxBytesPerChar() != 8;
        std::string pieces;
        std::int32_t at = 0;
        std::size_t end = 0;
        Outcome outcome = Outcome::stop;
        while (outcome == Outcome::stop &&
               (end < units.size() || static_cast<std::size_t>(at) < whole.consumed)) {
            end = std::min(units.size(), end + texts.below(20));
            const std::size_t ample = 8 * (end + 1 - static_cast<std::size_t>(at));
            outcome = convertOnce(*encoder, units, at, end, pieces,
                                  losesPairs ? ample : 8 + texts.below(30));
        }
        if (outcome == Outcome::stop && whole.end != Outcome::stop) {
            outcome = convertOnce(*encoder, units, at, end, pieces, 10);
        }
        ASSERT_EQ(outcome, whole.end) << round;
        ASSERT_EQ(static_cast<std::size_t>(at), whole.consumed) << round;
        ASSERT_EQ(pieces, whole.out) << round;
    }
}

TEST_P(Converters, knowTheirName)
{
    EXPECT_EQ(std::u16string_view(decoder->getEncodingName()), GetParam().name);
    EXPECT_EQ(std::u16string_view(encoder->getEncodingName()), GetParam().name);
}

std::string plainName(const testing::TestParamInfo<SlowEncoding>& row)
{
    std::string name;
    for (const char16_t* unit = row.param.name; *unit != 0; ++unit) {
        if (*unit != u'-') name += static_cast<char>(*unit);
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(, Converters, testing::ValuesIn(test::slowEncodings), plainName);

TEST(BTCAMP7, tellsOfSurrogatesBehindWhatItHasRead)
{
    const auto decoder =
        Reference<ByteToCharConverter>(ByteToCharConverter::getConverter(u"AMP-7"));
    std::int32_t from = 1;
    try {
        decoded(*decoder, "xy&_D800;", from);
        FAIL();
    } catch (const InvalidCharacterException& exception) {
        EXPECT_EQ(exception.getDescription(),
                  u"Invalid AMP-7 sequence (decoded chars in surrogate range)");
    }
    EXPECT_EQ(from, 2);
}

} // namespace
} // namespace orv::text::charset
