#pragma once

#include "compat/CORVObjectMap.h"
#include "compat/CORVSmartPtr.h"
#include "compat/IORVConnector.h"
#include "orv/ComObject.h"
#include "orv/String.h"
#include "orv/quark/Implements.h"

/// The base of connectors that a host writes: it keeps their properties, and they connect().
///
///     class Loopback : public CORVAbstractConnector {
///     protected:
///         CORVSmartPtr<orv::IORVUnknown> connect(const orv::String& address) override
///         {
///             const orv::String timeout = getProperty(u"timeout");
///             ...
///         }
///     };
///
/// Ownership: texts are copied; a copy of the connector shares its properties. Errors: the
/// interface gives the results of what is thrown, and E_POINTER for null pointers. Threads: one at
/// a time.
class ORV_API CORVAbstractConnector : public orv::quark::Implements<orv::ComObject, IORVConnector> {
public:
    /// A connector without properties.
    CORVAbstractConnector();
    CORVAbstractConnector(const CORVAbstractConnector& other);
    CORVAbstractConnector& operator=(const CORVAbstractConnector& other);
    ~CORVAbstractConnector() noexcept(false) override;

    orv::Result QueryInterface(const GUID& iid, void** out) override;

    /// Stores the interface `iid` of what connect() gives; E_FAIL where that is null.
    orv::Result Connect(const char16_t* address, const GUID& iid, void** out) override;
    orv::Result SetProperty(const char16_t* name, const char16_t* value) override;
    orv::Result GetProperty(const char16_t* name, orv::util::IORVCharBuffer* value) const override;

    /// The interfaces of this class.
    static const orv::quark::InterfaceData* GetComIntfMap();

protected:
    /// Makes the connection, an object on the heap.
    virtual CORVSmartPtr<orv::IORVUnknown> connect(const orv::String& address) = 0;

    /// Gives the property `name` a value, in place of the one it has.
    void setProperty(const orv::String& name, const orv::String& value);
    /// The value of `name`. Throws Exception "Property Not Found." where it has none.
    orv::String getProperty(const orv::String& name) const;
    /// Whether `name` has a value.
    bool hasProperty(const orv::String& name) const;

private:
    CORVObjectMap<orv::String, orv::String> m_properties;
};
