#pragma once

#include "orv/Failure.h"
#include "orv/IORVUnknown.h"

#include <typeinfo>

namespace orv::collections {

/// The `T` that `element` is, null for null. Throws CastFailedException where it is none.
template <class T>
T* elementCast(IORVUnknown* element)
{
    if (element == nullptr) return nullptr;
    // Most elements are exactly a T, which then lies at the start of the object.
    if (typeid(*element) == typeid(T)) return static_cast<T*>(dynamic_cast<void*>(element));
    T* const cast = dynamic_cast<T*>(element);
    if (cast == nullptr) throwCastFailed();
    return cast;
}

} // namespace orv::collections
