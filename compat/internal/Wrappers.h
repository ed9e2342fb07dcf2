#pragma once

#include "compat/CORVSmartPtr.h"
#include "orv/Failure.h"
#include "orv/Object.h"
#include "orv/Result.h"
#include "orv/String.h"
#include "orv/quark/InterfaceData.h"
#include "orv/util/ICharBuffer.h"

/// \file
/// What the sources of the classes with a binary interface use: its words, and what crosses it. A
/// null pointer gives E_POINTER.

namespace compat::internal {

using orv::Object;
using orv::Result;
using orv::resultOf;
using orv::String;
using orv::quark::InterfaceData;
using orv::util::IORVCharBuffer;

/// A text that lasts and may be a value or a key; a shared one could be a view of memory that does
/// not last.
inline CORVSmartPtr<String> copyOf(const String& text)
{
    return new String(String::AcquireCopy, text);
}

/// A terminated text that came in.
inline String textOf(const char16_t* text)
{
    if (text == nullptr) orv::throwResult(E_POINTER);
    return String(text);
}

/// An object that came in. One that is none of the library's gives E_NOINTERFACE, null too.
inline Object* objectOf(orv::IORVUnknown* value)
{
    auto* const object = dynamic_cast<Object*>(value);
    if (object == nullptr) orv::throwResult(E_NOINTERFACE);
    return object;
}

/// Stores what `body` returns.
template <class Value, class Body>
Result give(Value* out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    *out = Value{};
    return resultOf([&] { *out = body(); });
}

/// Stores the text that `body` returns.
template <class Body>
Result giveText(IORVCharBuffer* out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    return resultOf([&] {
        String text = body();
        orv::throwIfFailed(ORVCopyCharBuffer(out, &text));
    });
}

/// Stores the interface `iid` of the object that `body` returns; null gives E_FAIL.
template <class Body>
Result giveInterface(const GUID& iid, void** out, Body&& body)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return resultOf([&] {
        const auto object = body();
        orv::throwIfFailed(object ? object->QueryInterface(iid, out) : E_FAIL);
    });
}

/// What an operation answers that only a class of the host can fulfil.
template <class Value>
Result refuse(Value* out)
{
    if (out == nullptr) return E_POINTER;
    *out = Value{};
    return E_NOTIMPL;
}

} // namespace compat::internal
