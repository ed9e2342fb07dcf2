#pragma once

#include "orv/String.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <string>

namespace orv::math {

/// The ASCII text of `text`.
inline std::string narrow(const String& text)
{
    return {text.getData(), text.getData() + text.getLength()};
}

inline String wide(const std::string& text)
{
    const std::u16string units(text.begin(), text.end());
    return {units.data(), static_cast<std::int32_t>(units.size())};
}

/// The description of the Exception that `operation` throws, "not refused" if it throws none.
template <class Operation>
std::string thrownBy(Operation operation)
{
    return test::refusalOf(operation).second;
}

} // namespace orv::math
