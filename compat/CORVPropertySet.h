#pragma once

#include "compat/CORVProperty.h"
#include "compat/IORVPropertySet.h"

/// Names with values, kept by a class of the host as CORVProperty objects.
///
///     class Settings : public CORVPropertySet {
///     protected:
///         CORVSmartPtr<const CORVProperty> getProperty(const orv::String& name) const override;
///         CORVSmartPtr<CORVProperty> makeProperty(const orv::String& name) override;
///     };
///
/// A number of another type than these is cast first: `set(name, 5u)` is ambiguous.
///
/// Errors: what the property throws; a name that getProperty() has nothing for throws
/// ResultException with E_NOT_FOUND. The interface gives the results of what is thrown, E_POINTER
/// for null pointers, E_NOINTERFACE for a value to Set() that is no orv::Object; counting, and
/// giving out properties and parent, are E_NOTIMPL until the host's class overrides them. Threads:
/// as the host's class.
class ORV_API CORVPropertySet : public orv::quark::Implements<orv::Object, IORVPropertySet2> {
public:
    orv::Result QueryInterface(const GUID& iid, void** out) override;

    /// Gives the property of that name a value, as CORVProperty::set() does.
    virtual void set(const orv::String& name, double value);
    virtual void set(const orv::String& name, std::int32_t value);
    virtual void set(const orv::String& name, const orv::String& value);
    virtual void set(const orv::String& name, orv::Object* value);
    /// The value of that name, as the operation of CORVProperty gives it.
    virtual CORVSmartPtr<orv::Object> getValue(const orv::String& name) const;
    virtual orv::String getValueString(const orv::String& name) const;
    virtual std::int32_t getValueLong(const orv::String& name) const;
    virtual double getValueDouble(const orv::String& name) const;

protected:
    /// The property to read for that name, null if there is none.
    virtual CORVSmartPtr<const CORVProperty> getProperty(const orv::String& name) const = 0;
    /// The property to write for that name, a new one if there is none. Never null.
    virtual CORVSmartPtr<CORVProperty> makeProperty(const orv::String& name) = 0;

public:
    orv::Result SetString(const char16_t* name, const char16_t* value) override;
    orv::Result GetString(const char16_t* name, orv::util::IORVCharBuffer* value) const override;
    orv::Result SetLong(const char16_t* name, std::int32_t value) override;
    orv::Result GetLong(const char16_t* name, std::int32_t* value) const override;
    orv::Result SetDouble(const char16_t* name, double value) override;
    orv::Result GetDouble(const char16_t* name, double* value) const override;
    orv::Result GetCount(std::int32_t* count) const override;
    orv::Result GetProperty(const char16_t* name, IORVProperty** property) const override;
    orv::Result GetParent(IORVPropertySet** parent) const override;
    orv::Result Set(const char16_t* name, orv::IORVUnknown* value) override;
    orv::Result Get(const char16_t* name, const GUID& iid, void** value) const override;
    orv::Result GetProperty2(const char16_t* name, IORVProperty2** property) const override;
    orv::Result GetParent2(IORVPropertySet2** parent) const override;

    /// The interfaces of this class.
    static const orv::quark::InterfaceData* GetComIntfMap();

private:
    CORVSmartPtr<const CORVProperty> requireProperty(const orv::String& name) const;
};
