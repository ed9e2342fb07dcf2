#include "platform/orvcore.h"

// There is no component registry on this system yet: the operations on it say so, and callers pass
// E_NOTIMPL on.

ORVResult ORVModuleSetInitialized(const void*, std::int32_t) noexcept
{
    return S_OK;
}

ORVResult ORVModuleComCreateObject(const void*, const GUID&, void*, const GUID&,
                                   void** out) noexcept
{
    if (out != nullptr) *out = nullptr;
    return E_NOTIMPL;
}

ORVResult ORVComCreateObjectByProgID(const char16_t*, void*, const GUID&, void** out) noexcept
{
    if (out != nullptr) *out = nullptr;
    return E_NOTIMPL;
}

ORVResult ORVComClassIDFromProgID(const char16_t*, GUID*) noexcept
{
    return E_NOTIMPL;
}
