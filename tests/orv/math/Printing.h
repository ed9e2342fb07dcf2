#pragma once

#include "orv/Exception.h"
#include "orv/String.h"

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

/// The description of the Exception that `operation` throws, "nothing" if it throws none.
template <class Operation>
std::string thrownBy(Operation operation)
{
    try {
        operation();
    } catch (const Exception& exception) {
        return narrow(exception.getDescription());
    }
    return "nothing";
}

} // namespace orv::math
