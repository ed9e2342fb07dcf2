#include "fuzz/ConverterFuzz.h"

#include "orv/Reference.h"

#include <cstring>

/// \file
/// Every encoder on any units: one call gives what the slow encoder gives, with positions valid
/// behind a failure, and pieces of any size add up to what one call gives.

using namespace orv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4) return -1;
    Plan plan(data);
    std::u16string units((size - 4) / 2, u'\0');
    if (!units.empty()) std::memcpy(units.data(), data + 4, units.size() * 2);
    const orv::Reference encoder(CharToByteConverter::getConverter(plan.encoding->name));
    check(*encoder, plan, units);
    return 0;
}
