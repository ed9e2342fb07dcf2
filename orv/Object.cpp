#include "orv/Object.h"

#include "orv/Failure.h"

#include <typeinfo>

namespace orv {

namespace {

std::int32_t compareAddresses(const void* a, const void* b) noexcept
{
    const auto left = reinterpret_cast<std::uintptr_t>(a);
    const auto right = reinterpret_cast<std::uintptr_t>(b);
    if (left == right) return 0;
    return left > right ? 1 : -1;
}

/// `other` as an Object, or null. Objects of one class, which most comparisons are between, have
/// their parts at the same distances, so that no cast has to search for them.
const Object* asObject(const Object* own, const IORVUnknown* other)
{
    if (other == nullptr || &typeid(*own) != &typeid(*other)) {
        return dynamic_cast<const Object*>(other);
    }
    const auto start = reinterpret_cast<std::uintptr_t>(dynamic_cast<const void*>(own));
    const auto distance = reinterpret_cast<std::uintptr_t>(own) - start;
    return reinterpret_cast<const Object*>(
        static_cast<const char*>(dynamic_cast<const void*>(other)) + distance);
}

} // namespace

Object::Object(const Object&) noexcept : Implements() {}

Object& Object::operator=(const Object&) noexcept
{
    return *this;
}

const quark::InterfaceData* Object::GetComIntfMap()
{
    static const quark::InterfaceData map[] = {quark::interfaceRow<IORVComparable, Object>(),
                                               quark::endRow};
    return map;
}

Result Object::QueryInterface(const GUID& iid, void** out)
{
    return quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Object* Object::clone() const
{
    if (typeid(*this) != typeid(Object)) throwCloneNotSupported();
    return new Object;
}

std::int32_t Object::compareTo(const Object& other) const
{
    return compareAddresses(this, &other);
}

bool Object::equals(const Object& other) const
{
    return this == &other;
}

std::uint32_t Object::hashCode() const
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(this));
}

Result Object::CompareTo(const IORVUnknown* other, std::int32_t* result) const
{
    *result = 0;
    return resultOf([&] {
        const Object* const object = asObject(this, other);
        *result = object != nullptr ? compareTo(*object) : compareAddresses(other, this);
    });
}

Result Object::HashCode(std::uint32_t* result) const
{
    *result = 0;
    return resultOf([&] { *result = hashCode(); });
}

} // namespace orv
