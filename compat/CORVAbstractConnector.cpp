#include "compat/CORVAbstractConnector.h"

#include "compat/internal/Wrappers.h"

using namespace compat::internal;

CORVAbstractConnector::CORVAbstractConnector() : m_properties(101, 0.75F) {}
CORVAbstractConnector::CORVAbstractConnector(const CORVAbstractConnector& other) = default;
CORVAbstractConnector&
CORVAbstractConnector::operator=(const CORVAbstractConnector& other) = default;
CORVAbstractConnector::~CORVAbstractConnector() noexcept(false) = default;

const InterfaceData* CORVAbstractConnector::GetComIntfMap()
{
    using namespace orv::quark;
    static const InterfaceData map[] = {interfaceRow<IORVConnector, CORVAbstractConnector>(),
                                        baseRow<orv::ComObject>(), endRow};
    return map;
}

Result CORVAbstractConnector::QueryInterface(const GUID& iid, void** out)
{
    return orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result CORVAbstractConnector::Connect(const char16_t* address, const GUID& iid, void** out)
{
    return giveInterface(iid, out, [&] { return connect(textOf(address)); });
}

Result CORVAbstractConnector::SetProperty(const char16_t* name, const char16_t* value)
{
    return resultOf([&] { setProperty(textOf(name), textOf(value)); });
}

Result CORVAbstractConnector::GetProperty(const char16_t* name, IORVCharBuffer* value) const
{
    return giveText(value, [&] { return getProperty(textOf(name)); });
}

void CORVAbstractConnector::setProperty(const String& name, const String& value)
{
    m_properties.put(copyOf(name).get(), copyOf(value).get());
}

String CORVAbstractConnector::getProperty(const String& name) const
{
    const CORVSmartPtr<String> value = m_properties.get(copyOf(name).get());
    if (!value) orv::throwException(u"Property Not Found.");
    return *value;
}

bool CORVAbstractConnector::hasProperty(const String& name) const
{
    return m_properties.containsKey(copyOf(name).get());
}
