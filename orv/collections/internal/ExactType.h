#pragma once

#include "orv/IORVUnknown.h"

#include <typeinfo>

namespace orv::collections::internal {

/// `element` as a `T` where its class is exactly that, else null: a query for the price of two
/// loads, for the classes met most. An object whose class has a second record of its type, in
/// another library, is not recognised.
template <class T>
const T* exactly(const IORVUnknown* element) noexcept
{
    if (element == nullptr || &typeid(*element) != &typeid(T)) return nullptr;
    return static_cast<const T*>(dynamic_cast<const void*>(element));
}

} // namespace orv::collections::internal
