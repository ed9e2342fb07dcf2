#include "fuzz/ConverterFuzz.h"

#include "components/icodec/CharCodec.h"
#include "orv/text/charset/ComConverters.h"

#include <algorithm>
#include <utility>
#include <vector>

/// \file
/// The codecs over iconv on any bytes and any units: blocks give what single characters give,
/// pieces add up to the whole, and what was decoded without a loss comes back.

using namespace orv;
using namespace orv::components::icodec;
using namespace orv::fuzz;

namespace {

/// A class below BTCCom is asked for every character, and so is one below CTBCom.
struct OneByOneDecoder : text::charset::BTCCom {
    using BTCCom::BTCCom;
};
struct OneByOneEncoder : text::charset::CTBCom {
    using CTBCom::CTBCom;
};

template <std::size_t... ROWS>
Reference<CharCodec> makeCodec(std::size_t row, std::index_sequence<ROWS...>)
{
    Reference<CharCodec> codec;
    ((ROWS == row ? codec = makeReference<CodecOf<ROWS>>() : codec), ...);
    return codec;
}

/// The codecs that are worth it: several bytes a character, or accents of their own.
CharCodec* codecAt(std::size_t choice)
{
    static const std::vector<Reference<CharCodec>> codecs = [] {
        constexpr auto rows = std::make_index_sequence<std::size(codePages)>();
        std::vector<Reference<CharCodec>> made;
        for (const std::size_t row : {4u, 7u, 18u, 19u, 20u, 21u, 22u}) {
            made.push_back(makeCodec(row, rows));
        }
        return made;
    }();
    return codecs[choice % codecs.size()].get();
}

/// What pieces of any size give, until nothing moves any more, and where they stop.
template <class Result, class Converter, class Text>
std::pair<Result, std::int32_t> inPieces(Converter& converter, Plan& plan, const Text& text)
{
    Result out;
    std::int32_t from = 0;
    for (std::size_t end = 0; end < text.size();) {
        end = std::min(text.size(), end + 1 + plan.size(20));
        for (std::int32_t before = -1; before != from;) {
            before = from;
            require(convertOnce(converter, text, from, end, out, 6 + plan.size(20)) ==
                    Outcome::stop);
        }
    }
    return {out, from};
}

template <class Result, class Converter, class Text>
std::pair<Result, std::int32_t> atOnce(Converter& converter, const Text& text)
{
    Result out;
    std::int32_t from = 0;
    require(convertOnce(converter, text, from, text.size(), out, 6 * text.size() + 6) ==
            Outcome::stop);
    return {out, from};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4) return -1;
    Plan plan(data);
    CharCodec* const codec = codecAt(data[0]);
    text::charset::BTCCom decoder(codec);
    OneByOneDecoder slowDecoder(codec);
    text::charset::CTBCom encoder(codec);
    OneByOneEncoder slowEncoder(codec);

    const std::string bytes(reinterpret_cast<const char*>(data) + 4, size - 4);
    const auto units = atOnce<std::u16string>(decoder, bytes);
    require(units == atOnce<std::u16string>(slowDecoder, bytes));
    require(units == inPieces<std::u16string>(decoder, plan, bytes));
    require(bytes.size() - static_cast<std::size_t>(units.second) < 3);

    const auto again = atOnce<std::string>(encoder, units.first);
    require(again == inPieces<std::string>(encoder, plan, units.first));
    if (units.first.find(u'\uFFFD') == std::u16string::npos) {
        require(atOnce<std::u16string>(decoder, again.first).first == units.first);
    }

    std::u16string any;
    for (std::size_t i = 4; i + 1 < size; i += 2) {
        const auto unit = static_cast<char16_t>(data[i] << 8 | data[i + 1]);
        if ((unit & 0xF800) != 0xD800) any += unit;
    }
    require(atOnce<std::string>(encoder, any) == atOnce<std::string>(slowEncoder, any));
    return 0;
}
