#include "compat/CORVPropertySet.h"

#include "compat/internal/Wrappers.h"

using namespace compat::internal;

const InterfaceData* CORVPropertySet::GetComIntfMap()
{
    using namespace orv::quark;
    static const InterfaceData map[] = {interfaceRow<IORVPropertySet2, CORVPropertySet>(),
                                        interfaceRow<IORVPropertySet, CORVPropertySet>(),
                                        baseRow<Object>(), endRow};
    return map;
}

Result CORVPropertySet::QueryInterface(const GUID& iid, void** out)
{
    return orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

CORVSmartPtr<const CORVProperty> CORVPropertySet::requireProperty(const String& name) const
{
    CORVSmartPtr<const CORVProperty> property = getProperty(name);
    if (!property) orv::throwResult(orv::E_NOT_FOUND);
    return property;
}

void CORVPropertySet::set(const String& name, double value)
{
    makeProperty(name)->set(value);
}

void CORVPropertySet::set(const String& name, std::int32_t value)
{
    makeProperty(name)->set(value);
}

void CORVPropertySet::set(const String& name, const String& value)
{
    makeProperty(name)->set(value);
}

void CORVPropertySet::set(const String& name, Object* value)
{
    makeProperty(name)->set(value);
}

CORVSmartPtr<Object> CORVPropertySet::getValue(const String& name) const
{
    return requireProperty(name)->getValue();
}

String CORVPropertySet::getValueString(const String& name) const
{
    return requireProperty(name)->getValueString();
}

std::int32_t CORVPropertySet::getValueLong(const String& name) const
{
    return requireProperty(name)->getValueLong();
}

double CORVPropertySet::getValueDouble(const String& name) const
{
    return requireProperty(name)->getValueDouble();
}

Result CORVPropertySet::SetString(const char16_t* name, const char16_t* value)
{
    return resultOf([&] { set(textOf(name), textOf(value)); });
}

Result CORVPropertySet::GetString(const char16_t* name, IORVCharBuffer* value) const
{
    return giveText(value, [&] { return getValueString(textOf(name)); });
}

Result CORVPropertySet::SetLong(const char16_t* name, std::int32_t value)
{
    return resultOf([&] { set(textOf(name), value); });
}

Result CORVPropertySet::GetLong(const char16_t* name, std::int32_t* value) const
{
    return give(value, [&] { return getValueLong(textOf(name)); });
}

Result CORVPropertySet::SetDouble(const char16_t* name, double value)
{
    return resultOf([&] { set(textOf(name), value); });
}

Result CORVPropertySet::GetDouble(const char16_t* name, double* value) const
{
    return give(value, [&] { return getValueDouble(textOf(name)); });
}

Result CORVPropertySet::GetCount(std::int32_t* count) const
{
    return refuse(count);
}

Result CORVPropertySet::GetProperty(const char16_t*, IORVProperty** property) const
{
    return refuse(property);
}

Result CORVPropertySet::GetParent(IORVPropertySet** parent) const
{
    return refuse(parent);
}

Result CORVPropertySet::Set(const char16_t* name, orv::IORVUnknown* value)
{
    return resultOf([&] { set(textOf(name), objectOf(value)); });
}

Result CORVPropertySet::Get(const char16_t* name, const GUID& iid, void** value) const
{
    return giveInterface(iid, value, [&] { return getValue(textOf(name)); });
}

Result CORVPropertySet::GetProperty2(const char16_t*, IORVProperty2** property) const
{
    return refuse(property);
}

Result CORVPropertySet::GetParent2(IORVPropertySet2** parent) const
{
    return refuse(parent);
}
