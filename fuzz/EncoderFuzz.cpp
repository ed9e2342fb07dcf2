#include "fuzz/ConverterFuzz.h"

#include "orv/Reference.h"

#include <algorithm>
#include <cstring>

/// \file
/// Every encoder on any units: one call gives what the slow encoder gives, with positions valid
/// behind a failure, and pieces of any size add up to what one call gives.

using namespace orv;
using namespace orv::fuzz;
using text::charset::CharToByteConverter;

namespace {

void checkFlush(CharToByteConverter& encoder, bool pending)
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

void checkOneCall(CharToByteConverter& encoder, Plan& plan, const std::u16string& units)
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
}

/// An encoder that remembers a leading surrogate and not its bytes loses the pair for want of room,
/// so room is ample where there are surrogates.
void checkPieces(CharToByteConverter& encoder, Plan& plan, const std::u16string& units)
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

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4) return -1;
    Plan plan(data);
    std::u16string units((size - 4) / 2, u'\0');
    if (!units.empty()) std::memcpy(units.data(), data + 4, units.size() * 2);
    const Reference<CharToByteConverter> encoder(
        CharToByteConverter::getConverter(plan.encoding->name));
    encoder->setSubstitutionMode(plan.substitution.on);
    encoder->setSubstitutionBytes(
        reinterpret_cast<const signed char*>(plan.substitution.bytes.data()),
        static_cast<std::int32_t>(plan.substitution.bytes.size()));
    checkOneCall(*encoder, plan, units);
    checkPieces(*encoder, plan, units);
    return 0;
}
