#pragma once

#include "orv/ComObject.h"
#include "orv/IORVComparable.h"
#include "orv/quark/Implements.h"

#include <cstdint>

namespace orv {

class Class;
class String;

/// The root of the library's classes: counted, comparable, printable.
///
/// Copying never copies a life: a copy starts with count 0 and no module, and assignment changes
/// nothing here. Threads: see ComObject; a class is not thread-safe unless it says so.
class ORV_API Object : public quark::Implements<ComObject, IORVComparable> {
public:
    Object() noexcept = default;
    Object(const Object& other) noexcept;
    Object& operator=(const Object& other) noexcept;

    Result QueryInterface(const GUID& iid, void** out) override;

    ~Object() noexcept(false) override {}

    /// A new object equal to this one, with count 0: put it into a Reference at once. Throws
    /// CloneNotSupportedException unless the class of the object has its own clone().
    virtual Object* clone() const;

    /// The order against `other`: negative, 0 or positive. By default the order of the addresses.
    /// Classes with an order of their own throw CastFailedException for an object of another kind.
    virtual std::int32_t compareTo(const Object& other) const;

    /// Whether `other` equals this object; by default, whether it is this object.
    virtual bool equals(const Object& other) const;

    /// The run-time class, owned by the class manager. Throws ClassNotFoundException for a class
    /// that is not registered.
    virtual const Class* getClass() const;

    /// By default the low 32 bits of the address.
    virtual std::uint32_t hashCode() const;

    /// By default the class's name, "@" and the hash code in hexadecimal; "Object" stands for the
    /// name of a class that is not registered.
    virtual String toString() const;

    /// Stores compareTo() where `other` is an Object of this library.
    ///
    /// Against any other pointer, null too, raw addresses are compared the other way round: 1 if
    /// `other` has the greater address. Sorts of mixed pointers depend on it.
    Result CompareTo(const IORVUnknown* other, std::int32_t* result) const override;

    /// Stores hashCode().
    Result HashCode(std::uint32_t* result) const override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();
};

/// The pointer that stands for the identity of `object`, as QueryInterface() gives it. Null for
/// null.
inline IORVUnknown* toUnknown(const Object* object) noexcept
{
    // Counting is const on interfaces, so handing out the identity drops no protection.
    return object == nullptr ? nullptr : const_cast<Object*>(object)->GetUnknown();
}

} // namespace orv
