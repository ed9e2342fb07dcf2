#include "compat/CORVProperty.h"

#include "compat/internal/Wrappers.h"
#include "orv/Number.h"

using orv::Number;
using namespace compat::internal;

namespace {

const Object& requireValue(const CORVSmartPtr<Object>& value)
{
    if (!value) orv::throwResult(E_POINTER);
    return *value;
}

} // namespace

CORVProperty::CORVProperty(const String& key, double value)
    : CORVProperty(key, String::valueOf(value))
{
}

CORVProperty::CORVProperty(const String& key, std::int32_t value)
    : CORVProperty(key, String::valueOf(value))
{
}

CORVProperty::CORVProperty(const String& key, const String& value)
    : CORVProperty(key, copyOf(value).get())
{
}

CORVProperty::CORVProperty(const String& key, Object* value)
    : m_key(String::AcquireCopy, key), m_value(value)
{
}

CORVProperty::CORVProperty(const CORVProperty& other) = default;
CORVProperty& CORVProperty::operator=(const CORVProperty& other) = default;
CORVProperty::~CORVProperty() noexcept(false) = default;

const InterfaceData* CORVProperty::GetComIntfMap()
{
    using namespace orv::quark;
    static const InterfaceData map[] = {interfaceRow<IORVProperty2, CORVProperty>(),
                                        interfaceRow<IORVProperty, CORVProperty>(),
                                        baseRow<Object>(), endRow};
    return map;
}

Result CORVProperty::QueryInterface(const GUID& iid, void** out)
{
    return orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

String CORVProperty::getKey() const
{
    return m_key;
}

CORVSmartPtr<Object> CORVProperty::getValue() const
{
    return m_value;
}

String CORVProperty::getValueString() const
{
    return requireValue(m_value).toString();
}

std::int32_t CORVProperty::getValueLong() const
{
    const Object& value = requireValue(m_value);
    const auto* const number = dynamic_cast<const Number*>(&value);
    return number != nullptr ? number->toInt32() : Number::parseInt(value.toString());
}

double CORVProperty::getValueDouble() const
{
    const Object& value = requireValue(m_value);
    const auto* const number = dynamic_cast<const Number*>(&value);
    return number != nullptr ? number->toDouble() : Number::parseDouble(value.toString());
}

void CORVProperty::set(double value)
{
    set(String::valueOf(value));
}

void CORVProperty::set(std::int32_t value)
{
    set(String::valueOf(value));
}

void CORVProperty::set(const String& value)
{
    set(copyOf(value).get());
}

void CORVProperty::set(Object* value)
{
    m_value = value;
}

Result CORVProperty::GetKey(IORVCharBuffer* key) const
{
    return giveText(key, [&] { return getKey(); });
}

Result CORVProperty::GetValueString(IORVCharBuffer* value) const
{
    return giveText(value, [&] { return getValueString(); });
}

Result CORVProperty::GetValueLong(std::int32_t* value) const
{
    return give(value, [&] { return getValueLong(); });
}

Result CORVProperty::GetValueDouble(double* value) const
{
    return give(value, [&] { return getValueDouble(); });
}

Result CORVProperty::SetValueString(const char16_t* value)
{
    return resultOf([&] { set(textOf(value)); });
}

Result CORVProperty::SetValueLong(std::int32_t value)
{
    return resultOf([&] { set(value); });
}

Result CORVProperty::SetValueDouble(double value)
{
    return resultOf([&] { set(value); });
}

Result CORVProperty::GetValue(const GUID& iid, void** value) const
{
    return giveInterface(iid, value, [&] { return getValue(); });
}

Result CORVProperty::SetValue(orv::IORVUnknown* value)
{
    return resultOf([&] { set(objectOf(value)); });
}
