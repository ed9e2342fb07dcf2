#pragma once

#include "compat/CORVSmartPtr.h"
#include "compat/IORVProperty.h"
#include "orv/Object.h"
#include "orv/String.h"
#include "orv/quark/Implements.h"

/// A key with a value, which is an object.
///
///     CORVSmartPtr<CORVProperty> port(new CORVProperty(u"port", 8080));
///     port->getValueString();                  // "8080": numbers are kept as their text
///     port->set(u"81 or so");
///     port->getValueLong();                    // 81
///
/// A number of another type than these is cast first: `set(5u)` is ambiguous.
///
/// Ownership: holds a count on the value, so values live on the heap; texts are copied. Errors: a
/// null value is kept and read as null; text and numbers of it throw ResultException with
/// E_POINTER, and GetValue() of it gives E_FAIL. The interface gives the results of what is thrown
/// and E_POINTER for null pointers; SetValue() refuses what is no orv::Object, null too, with
/// E_NOINTERFACE. Threads: one at a time.
class ORV_API CORVProperty : public orv::quark::Implements<orv::Object, IORVProperty2> {
public:
    CORVProperty(const orv::String& key, double value);
    CORVProperty(const orv::String& key, std::int32_t value);
    CORVProperty(const orv::String& key, const orv::String& value);
    CORVProperty(const orv::String& key, orv::Object* value);
    /// A further property with the same value.
    CORVProperty(const CORVProperty& other);
    CORVProperty& operator=(const CORVProperty& other);
    ~CORVProperty() noexcept(false) override;

    orv::Result QueryInterface(const GUID& iid, void** out) override;

    /// The key.
    virtual orv::String getKey() const;
    /// The value itself, which may be null.
    virtual CORVSmartPtr<orv::Object> getValue() const;
    /// toString() of the value.
    virtual orv::String getValueString() const;
    /// Of a Number its 32-bit value, which is cut to its low bits. Of anything else the number that
    /// its text begins with, by Number::parseInt(): 0 where there is none.
    virtual std::int32_t getValueLong() const;
    /// The same by Number::parseDouble().
    virtual double getValueDouble() const;
    /// Lets the value be the text of a number, as String::valueOf() prints it.
    virtual void set(double value);
    virtual void set(std::int32_t value);
    /// Lets the value be a new String.
    virtual void set(const orv::String& value);
    /// Lets the value be this object.
    virtual void set(orv::Object* value);

    orv::Result GetKey(orv::util::IORVCharBuffer* key) const override;
    orv::Result GetValueString(orv::util::IORVCharBuffer* value) const override;
    orv::Result GetValueLong(std::int32_t* value) const override;
    orv::Result GetValueDouble(double* value) const override;
    orv::Result SetValueString(const char16_t* value) override;
    orv::Result SetValueLong(std::int32_t value) override;
    orv::Result SetValueDouble(double value) override;
    orv::Result GetValue(const GUID& iid, void** value) const override;
    orv::Result SetValue(orv::IORVUnknown* value) override;

    /// The interfaces of this class.
    static const orv::quark::InterfaceData* GetComIntfMap();

private:
    orv::String m_key;
    CORVSmartPtr<orv::Object> m_value;
};
