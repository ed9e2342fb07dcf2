#include "fuzz/ConverterFuzz.h"

#include "orv/Object.h"
#include "orv/quark/Implements.h"
#include "orv/text/charset/ComConverters.h"

#include <algorithm>

/// \file
/// The converters over a codec component. Each call must do what a plain converter that is given
/// the same call does, down to the surrogate it remembers. Pieces of the input must add up.

using namespace orv;
using namespace orv::fuzz;
using namespace orv::text::charset;

namespace {

/// The upper three bits of the first byte are the length, 0 standing for 1, and the others begin
/// the value; with a length above 4 there is none. The way back is not its inverse: it takes care
/// to give all lengths, nothing and failures.
struct Encoding {
    static std::size_t lengthOf(char first) { return std::max(1u, (first & 0xFFu) >> 5); }

    /// 0 consumed where more bytes are needed.
    static std::uint32_t read(const char* bytes, std::size_t& n)
    {
        const std::size_t length = lengthOf(bytes[0]);
        if (length > 4) {
            n = 1;
            return 0xFFFD;
        }
        if (length > n) {
            n = 0;
            return 'x';
        }
        n = length;
        std::uint32_t code = static_cast<unsigned char>(bytes[0]);
        if (length > 1) code &= 0x1F;
        for (std::size_t i = 1; i < length; ++i) {
            code = code << 8 | static_cast<unsigned char>(bytes[i]);
        }
        return code;
    }

    static bool fails(std::uint32_t code) { return code % 11 == 5; }

    /// May be empty, or more than a character can have.
    static std::string print(std::uint32_t code)
    {
        if (code % 7 == 3 || test::between(code, 0xD800, 0xDBF0)) return {};
        if (code % 13 == 6) return "toolong";
        std::string bytes(code % 5 + 1, static_cast<char>(code));
        return bytes + static_cast<char>(code >> 8);
    }
};

class Codec : public quark::Implements<Object, IORVCharCodec> {
public:
    Result GetName(util::ICharBuffer* out) override
    {
        char16_t* units = nullptr;
        out->GetWriteLock(1, &units);
        units[0] = u'F';
        return out->ReleaseWriteLock(1);
    }
    Result GetMaxBytesPerChar(std::int32_t* out) override
    {
        *out = 6;
        return S_OK;
    }
    Result GetMaxCharsPerByte(std::int32_t* out) override
    {
        *out = 2;
        return S_OK;
    }
    Result BytesToChar(const signed char* bytes, std::int32_t* n, std::uint32_t* code) override
    {
        auto count = static_cast<std::size_t>(*n);
        const std::uint32_t value = Encoding::read(reinterpret_cast<const char*>(bytes), count);
        *n = static_cast<std::int32_t>(count);
        if (value == 0xFFFD) return E_FAIL;
        *code = value;
        return S_OK;
    }
    Result CharToBytes(std::uint32_t code, util::IByteBuffer* out) override
    {
        if (Encoding::fails(code)) return E_FAIL;
        const std::string bytes = Encoding::print(code);
        const auto length = static_cast<std::int32_t>(bytes.size());
        signed char* to = nullptr;
        out->GetWriteLock(length, &to);
        std::copy(bytes.begin(), bytes.end(), to);
        return out->ReleaseWriteLock(length);
    }
};

test::DecoderStep decodeSlowly(std::string_view rest, std::size_t room,
                               const test::Substitution& substitution)
{
    std::size_t consumed = rest.size();
    const std::uint32_t code = Encoding::read(rest.data(), consumed);
    if (consumed == 0) return {};
    std::u16string units = substitution.units;
    if (code != 0xFFFD && room == 0) return {};
    if (code != 0xFFFD && code < 0x110000) {
        if (test::between(code, 0xD800, 0xDFFF)) return {Outcome::invalid};
        units = test::unitsOf(code);
    } else if (!substitution.on) {
        return {Outcome::unmappable};
    }
    if (units.size() > room) return {};
    return {Outcome::done, consumed, units};
}

test::EncoderStep encodeSlowly(std::u16string_view rest, std::size_t room,
                               const test::Substitution& substitution, char16_t& pending)
{
    std::uint32_t code = rest[0];
    if (pending != 0) {
        if (!test::trails(rest[0])) return {Outcome::invalid};
        code = test::pairOf(pending, rest[0]);
        pending = 0;
    }
    std::string bytes = Encoding::print(code);
    if (bytes.empty() || bytes.size() > 6 || Encoding::fails(code)) {
        if (test::leads(rest[0])) {
            pending = rest[0];
            return {Outcome::done, 1};
        }
        if (test::trails(rest[0])) return {Outcome::invalid};
        if (!substitution.on) return {Outcome::unmappable};
        bytes = substitution.bytes;
    }
    if (bytes.size() > room) return {};
    return {Outcome::done, 1, bytes};
}

void checkDecoder(BTCCom& decoder, Plan& plan, const std::string& bytes)
{
    std::u16string pieces;
    std::int32_t at = 0;
    std::size_t end = 0;
    Outcome outcome = Outcome::stop;
    const auto whole = test::slowDecode(decodeSlowly, bytes, 1 << 20, plan.substitution);
    while (outcome == Outcome::stop &&
           (end < bytes.size() || static_cast<std::size_t>(at) < whole.consumed)) {
        end = std::min(bytes.size(), end + plan.size(40));
        const std::size_t room = plan.size(30);
        const auto consumed = static_cast<std::size_t>(at);
        const auto expected =
            test::slowDecode(decodeSlowly, std::string_view(bytes).substr(consumed, end - consumed),
                             room, plan.substitution);
        std::u16string out;
        outcome = convertOnce(decoder, bytes, at, end, out, room);
        require(outcome == expected.end);
        require(static_cast<std::size_t>(at) == consumed + expected.consumed);
        require(out == expected.out);
        pieces += out;
    }
    require(static_cast<std::size_t>(at) == whole.consumed);
    require(pieces == whole.out);
}

void checkEncoder(CTBCom& encoder, Plan& plan, const std::u16string& units)
{
    char16_t pending = 0;
    std::int32_t at = 0;
    std::size_t end = 0;
    const auto size = static_cast<std::int32_t>(units.size());
    for (int failures = 0; failures < 50 && at < size;) {
        end = std::min(units.size(), end + plan.size(40));
        const std::size_t room = plan.size(60);
        const auto consumed = static_cast<std::size_t>(at);
        const auto expected = test::slowEncode(
            encodeSlowly, std::u16string_view(units).substr(consumed, end - consumed), room,
            plan.substitution, pending);
        std::string out;
        const Outcome outcome = convertOnce(encoder, units, at, end, out, room);
        require(outcome == expected.end);
        require(static_cast<std::size_t>(at) == consumed + expected.consumed);
        require(out == expected.out);
        if (outcome == Outcome::stop) continue;
        ++failures;
        if (plan.size(2) == 0) {
            encoder.reset();
            pending = 0;
        }
        if (pending == 0 && plan.size(3) == 0) ++at; // as a caller who skips what is bad
        end = std::max(end, static_cast<std::size_t>(at));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4 || size > 4000) return -1;
    Plan plan(data);
    const auto codec = makeReference<Codec>();
    BTCCom decoder(codec.get());
    decoder.setSubstitutionMode(plan.substitution.on);
    decoder.setSubstitutionChars(plan.substitution.units.data(),
                                 static_cast<std::int32_t>(plan.substitution.units.size()));
    checkDecoder(decoder, plan, {data + 4, data + size});

    CTBCom encoder(codec.get());
    encoder.setSubstitutionMode(plan.substitution.on);
    encoder.setSubstitutionBytes(
        reinterpret_cast<const signed char*>(plan.substitution.bytes.data()),
        static_cast<std::int32_t>(plan.substitution.bytes.size()));
    std::u16string units;
    for (std::size_t i = 4; i + 1 < size; i += 2) {
        units += static_cast<char16_t>(data[i] * 256 + data[i + 1]);
    }
    checkEncoder(encoder, plan, units);
    return 0;
}
