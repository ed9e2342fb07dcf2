#pragma once

#include "orv/Reference.h"
#include "orv/quark/ClassData.h"
#include "orv/quark/ClassFactory.h"
#include "orv/quark/Module.h"

/// \file
/// The rows of a component's table of classes.

namespace orv::quark {

/// Makes an object of `T`, connects it with `module` and stores its interface `iid`. An object that
/// is to be part of another is refused with CLASS_E_NOAGGREGATION. Throws nothing: what the
/// constructor throws becomes the result.
template <class T>
Result createInstance(Module* module, IORVUnknown* outer, const GUID& iid, void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return resultOf([&]() -> Result {
        auto* const object = new T;
        object->SetComModule(module);
        const Reference<T> owner(object);
        if (outer != nullptr) return object->SetOuterUnknown(outer);
        return object->NonDelegatingQueryInterface(iid, out);
    });
}

/// The row of `T`, a class below ComObject that can be made without arguments and whose static
/// GetComProgID(), GetComDescription(), GetComVersionIndependentProgID() and GetComObjectVersion()
/// say how it is registered. `clsid` is static.
template <class T>
constexpr ClassData classRow(const GUID& clsid) noexcept
{
    return {&clsid,
            &createInstance<T>,
            &ClassFactory::Create,
            &T::GetComProgID,
            &T::GetComDescription,
            &T::GetComVersionIndependentProgID,
            &T::GetComObjectVersion};
}

/// The row behind the last one.
constexpr ClassData endOfClasses() noexcept
{
    return {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
}

} // namespace orv::quark
