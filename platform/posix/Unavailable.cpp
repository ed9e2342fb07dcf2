#include "platform/orvcore.h"

// There is no configuration store and no component registry on this system yet: the operations on
// them say so, and callers pass E_NOTIMPL on.

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

ORVResult ORVRegistryGetValue(ENUM_ORV_HKEY, const char16_t*, const char16_t*, std::uint32_t*,
                              void*, std::uint32_t*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistrySetValue(ENUM_ORV_HKEY, const char16_t*, const char16_t*, std::uint32_t,
                              const void*, std::uint32_t) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryDeleteValue(ENUM_ORV_HKEY, const char16_t*, const char16_t*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryDeleteKey(ENUM_ORV_HKEY, const char16_t*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryOpenKeyEnum(ENUM_ORV_HKEY, const char16_t*, ORVHandle*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryOpenValueEnum(ENUM_ORV_HKEY, const char16_t*, ORVHandle*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryEnumNextKey(ORVHandle, char16_t*, std::uint32_t*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryEnumNextValue(ORVHandle, char16_t*, std::uint32_t*, std::uint32_t*, void*,
                                   std::uint32_t*) noexcept
{
    return E_NOTIMPL;
}

ORVResult ORVRegistryCloseEnum(ORVHandle) noexcept
{
    return E_NOTIMPL;
}
