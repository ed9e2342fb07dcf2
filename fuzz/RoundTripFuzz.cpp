#include "fuzz/ConverterFuzz.h"

#include "orv/Reference.h"

#include <algorithm>
#include <optional>

/// \file
/// What an encoder takes must come back through the decoder, both without substitution, except for
/// what the encodings are known not to bring back.

using namespace orv;
using namespace orv::fuzz;
using namespace orv::text::charset;

namespace {

/// What decoding gives, up to a failure.
struct Return {
    std::u16string units;
    Outcome end = Outcome::stop;
};

Return expectedReturn(std::u16string_view name, const std::u16string& units)
{
    if (name.starts_with(u"UTF-16")) return {units};
    Return result;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i];
        const bool pair = test::leads(unit); // or it would not have been taken
        if (name == u"ISO8859_1" && unit >= 0x80) {
            result.units += static_cast<char16_t>(0xFF00 + unit);
        } else if (!pair && test::trails(unit)) {
            return {result.units, Outcome::invalid};
        } else if (name == u"AMP-7" && unit == 0xFFFD) {
            return {result.units, Outcome::unmappable};
        } else if (name == u"UTF-8" && pair &&
                   (test::pairOf(unit, units[i + 1]) & 0x30000) == 0x30000) {
            result.units += u"\uFFFD\uFFFD\uFFFD\uFFFD";
            ++i;
        } else {
            result.units.append(units, i, pair ? 2 : 1);
            i += pair ? 1 : 0;
        }
    }
    return result;
}

/// Nothing where the encoder refuses the text or would keep part of it.
std::optional<std::string> encoded(const char16_t* name, const std::u16string& units)
{
    const Reference<CharToByteConverter> encoder(CharToByteConverter::getConverter(name));
    encoder->setSubstitutionMode(false);
    std::string bytes;
    std::int32_t from = 0;
    const Outcome end = convertOnce(*encoder, units, from, units.size(), bytes, 8 * units.size());
    if (end != Outcome::stop || static_cast<std::size_t>(from) != units.size()) return {};
    try {
        std::int32_t to = 0;
        require(encoder->flush(nullptr, &to, 0) == 0);
    } catch (const InvalidCharacterException&) {
        return {};
    }
    return bytes;
}

void check(const char16_t* name, const std::u16string& units)
{
    const auto bytes = encoded(name, units);
    if (!bytes) return;
    const Reference<ByteToCharConverter> decoder(ByteToCharConverter::getConverter(name));
    decoder->setSubstitutionMode(false);
    std::u16string back;
    std::int32_t from = 0;
    const Outcome end = convertOnce(*decoder, *bytes, from, bytes->size(), back, bytes->size() + 1);
    const Return expected = expectedReturn(name, units);
    require(end == expected.end);
    require(back == expected.units);
    require(end != Outcome::stop || static_cast<std::size_t>(from) == bytes->size());
}

/// Units that small encodings have too come from single bytes, so that long texts get through.
std::u16string unitsFrom(const std::uint8_t* data, std::size_t size)
{
    std::u16string units;
    for (std::size_t i = 1; i < size; ++i) {
        if ((data[0] & 1) == 0) {
            units += static_cast<char16_t>(data[i]);
        } else if (i + 1 < size) {
            units += static_cast<char16_t>(data[i] * 256 + data[i + 1]);
            ++i;
        }
    }
    return units;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000) return -1;
    const std::u16string units = unitsFrom(data, size);
    for (const test::SlowEncoding& encoding : test::slowEncodings) check(encoding.name, units);
    return 0;
}
