#pragma once

#include <string>
#include <string_view>

/// \file
/// A conversion as it is measured: an object that is called with the input and a buffer and says
/// which part of it holds the result. One that cannot do the encoding has a false valid().

namespace orv::bench {

using Units = std::u16string_view;
using Bytes = std::string_view;

} // namespace orv::bench
