#pragma once

#include "orv/Export.h"

/// The version of the library that is loaded, such as u"1.0.0". Lives as long as the library.
extern "C" ORV_API const char16_t* ORVGetVersion() noexcept;
