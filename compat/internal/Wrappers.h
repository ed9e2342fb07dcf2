#pragma once

#include "compat/CORVSmartPtr.h"
#include "orv/Failure.h"
#include "orv/Object.h"
#include "orv/Result.h"
#include "orv/String.h"
#include "orv/util/ICharBuffer.h"

/// \file
/// What crosses the binary interface. A null pointer gives E_POINTER.

namespace compat::internal {

/// A terminated text that came in.
inline orv::String textOf(const char16_t* text)
{
    if (text == nullptr) orv::throwResult(E_POINTER);
    return orv::String(text);
}

/// An object that came in. One that is none of the library's gives E_NOINTERFACE, null too.
inline orv::Object* objectOf(orv::IORVUnknown* value)
{
    auto* const object = dynamic_cast<orv::Object*>(value);
    if (object == nullptr) orv::throwResult(E_NOINTERFACE);
    return object;
}

/// Stores what `body` returns.
template <class Value, class Body>
orv::Result give(Value* out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    *out = Value{};
    return orv::resultOf([&] { *out = body(); });
}

/// Stores the text that `body` returns.
template <class Body>
orv::Result giveText(orv::util::ICharBuffer* out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    return orv::resultOf([&] {
        orv::String text = body();
        orv::throwIfFailed(ORVCopyCharBuffer(out, &text));
    });
}

/// Stores the interface `iid` of the object that `body` returns; null gives E_FAIL.
template <class Body>
orv::Result giveInterface(const GUID& iid, void** out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return orv::resultOf([&] {
        const auto object = body();
        orv::throwIfFailed(object ? object->QueryInterface(iid, out) : E_FAIL);
    });
}

/// What an operation answers that only a class of the host can fulfil.
template <class Value>
orv::Result refuse(Value* out)
{
    if (out == nullptr) return E_POINTER;
    *out = Value{};
    return E_NOTIMPL;
}

} // namespace compat::internal
