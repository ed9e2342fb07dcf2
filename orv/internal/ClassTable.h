#pragma once

#include "orv/Class.h"

#include <span>
#include <typeinfo>

namespace orv::internal {

/// One run-time class of the library.
struct ClassRow {
    const char16_t* name;
    const std::type_info* type;
    Class::Factory factory; ///< null where a class cannot be made without arguments
};

/// The run-time classes of the library, in the order of their registration.
std::span<const ClassRow> classTable() noexcept;

} // namespace orv::internal
