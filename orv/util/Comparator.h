#pragma once

#include "orv/IORVComparator.h"
#include "orv/Object.h"

namespace orv::util {

/// The comparison that collections use unless they are given another: elements order and hash
/// themselves.
///
/// An element that answers IORVComparable is asked; every other one, and null, is compared by its
/// pointer, and hashes to the low 32 bits of it. Threads: any number, there is no state.
class ORV_API Comparator : public ::orv::quark::Implements<Object, IORVComparator> {
public:
    Comparator() noexcept = default;
    Comparator(const Comparator& other) noexcept = default;
    Comparator& operator=(const Comparator& other) noexcept = default;
    ~Comparator() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// 0: all comparators are equal. Throws CastFailedException where `other` is none.
    std::int32_t compareTo(const Object& other) const override;

    /// Whether `other` is of the same class. Throws ClassNotFoundException where either class is
    /// not registered.
    bool equals(const Object& other) const override;

    /// `a.compareTo(b)`.
    virtual std::int32_t compare(const Object& a, const Object& b) const;

    /// `object.hashCode()`.
    virtual std::uint32_t hash(const Object& object) const;

    /// What `a` says against `b`, its result as it stands; by the pointers, with -1, 0 or 1, where
    /// `a` is null or has no order.
    Result Compare(const IORVUnknown* a, const IORVUnknown* b, std::int32_t* result) const override;

    /// What `a` says; the low 32 bits of the pointer where `a` is null or has no hash.
    Result Hash(const IORVUnknown* a, std::uint32_t* result) const override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();
};

} // namespace orv::util
