#include "orv/util/Comparator.h"

#include "orv/Class.h"
#include "orv/Failure.h"
#include "orv/Integers.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/internal/ExactType.h"

namespace orv::util {

namespace {

using collections::internal::exactly;

/// `element` as something with an order and a hash, or null.
Reference<IORVComparable> comparable(const IORVUnknown* element)
{
    if (element == nullptr) return nullptr;
    void* found = nullptr;
    // A query changes nothing in the element but its count.
    const Result result =
        const_cast<IORVUnknown*>(element)->QueryInterface(IORVComparable::IID, &found);
    if (failed(result)) return nullptr;
    return Reference<IORVComparable>::adopt(static_cast<IORVComparable*>(found));
}

std::int32_t compareAddresses(const void* a, const void* b) noexcept
{
    const auto left = reinterpret_cast<std::uintptr_t>(a);
    const auto right = reinterpret_cast<std::uintptr_t>(b);
    if (left == right) return 0;
    return left < right ? -1 : 1;
}

} // namespace

Comparator::~Comparator() noexcept(false) = default;

const ::orv::quark::InterfaceData* Comparator::GetComIntfMap()
{
    static const ::orv::quark::InterfaceData map[] = {
        ::orv::quark::interfaceRow<IORVComparator, Comparator>(), ::orv::quark::baseRow<Object>(),
        ::orv::quark::endRow};
    return map;
}

Result Comparator::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

std::int32_t Comparator::compareTo(const Object& other) const
{
    if (dynamic_cast<const Comparator*>(&other) == nullptr) throwCastFailed();
    return 0;
}

bool Comparator::equals(const Object& other) const
{
    return getClass()->equals(*other.getClass());
}

std::int32_t Comparator::compare(const Object& a, const Object& b) const
{
    return a.compareTo(b);
}

std::uint32_t Comparator::hash(const Object& object) const
{
    return object.hashCode();
}

// Strings and Integer32s, which most keys and elements are, answer for themselves without being
// asked for their interface first.

Result Comparator::Compare(const IORVUnknown* a, const IORVUnknown* b, std::int32_t* result) const
{
    const auto* const text = exactly<String>(a);
    const auto* const otherText = text != nullptr ? exactly<String>(b) : nullptr;
    if (otherText != nullptr) {
        *result = 0;
        return resultOf([&] { *result = text->compare(*otherText, false); });
    }
    const auto* const number = exactly<Integer32>(a);
    const auto* const otherNumber = number != nullptr ? exactly<Integer32>(b) : nullptr;
    if (otherNumber != nullptr) {
        *result = number->compareTo(static_cast<const Number&>(*otherNumber));
        return S_OK;
    }
    if (const auto ordered = comparable(a)) return ordered->CompareTo(b, result);
    *result = compareAddresses(a, b);
    return S_OK;
}

Result Comparator::Hash(const IORVUnknown* a, std::uint32_t* result) const
{
    if (const auto* const text = exactly<String>(a)) {
        *result = 0;
        return resultOf([&] { *result = text->String::hashCode(); });
    }
    if (const auto* const number = exactly<Integer32>(a)) {
        *result = number->Integer32::hashCode();
        return S_OK;
    }
    if (const auto hashed = comparable(a)) return hashed->HashCode(result);
    *result = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(a));
    return S_OK;
}

} // namespace orv::util
