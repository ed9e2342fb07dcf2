#include "fuzz/ConverterFuzz.h"

#include "orv/Reference.h"

#include <algorithm>

/// \file
/// Every decoder on any bytes: one call gives what the slow decoder gives, with positions valid
/// behind a failure, and pieces of any size add up to what one call gives.

using namespace orv;
using namespace orv::fuzz;
using text::charset::ByteToCharConverter;

namespace {

void checkOneCall(ByteToCharConverter& decoder, Plan& plan, const std::string& bytes)
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

/// From `from` on up to a failure or the end.
void checkPieces(ByteToCharConverter& decoder, Plan& plan, const std::string& bytes)
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
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4) return -1;
    Plan plan(data);
    const std::string bytes(reinterpret_cast<const char*>(data) + 4, size - 4);
    const Reference<ByteToCharConverter> decoder(
        ByteToCharConverter::getConverter(plan.encoding->name));
    decoder->setSubstitutionMode(plan.substitution.on);
    decoder->setSubstitutionChars(plan.substitution.units.data(),
                                  static_cast<std::int32_t>(plan.substitution.units.size()));
    checkOneCall(*decoder, plan, bytes);
    checkPieces(*decoder, plan, bytes);
    return 0;
}
