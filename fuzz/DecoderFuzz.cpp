#include "fuzz/ConverterFuzz.h"

#include "orv/Reference.h"

/// \file
/// Every decoder on any bytes: one call gives what the slow decoder gives, with positions valid
/// behind a failure, and pieces of any size add up to what one call gives.

using namespace orv::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4) return -1;
    Plan plan(data);
    const orv::Reference decoder(ByteToCharConverter::getConverter(plan.encoding->name));
    check(*decoder, plan, {reinterpret_cast<const char*>(data) + 4, size - 4});
    return 0;
}
