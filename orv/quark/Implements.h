#pragma once

#include "orv/IORVUnknown.h"

namespace orv::quark {

/// Joins a counted class with interfaces: the three operations of IORVUnknown go to the class.
///
///     class LogEntry : public quark::Implements<Object, ILogEntry> { ... };
///
/// The interfaces must not derive from one another, and only their own row in the class's map
/// makes them reachable by QueryInterface().
template <class Base, class... Interfaces>
class ORV_API Implements : public Base, public Interfaces... {
public:
    using Base::Base;

    Result QueryInterface(const GUID& iid, void** out) override
    {
        return Base::QueryInterface(iid, out);
    }
    std::uint32_t AddRef() const override { return Base::AddRef(); }
    std::uint32_t Release() const override { return Base::Release(); }
};

/// The same for interfaces that are shared by several paths and so derived from virtually.
template <class Base, class... Interfaces>
class ORV_API ImplementsVirtual : public Base, public virtual Interfaces... {
public:
    using Base::Base;

    Result QueryInterface(const GUID& iid, void** out) override
    {
        return Base::QueryInterface(iid, out);
    }
    std::uint32_t AddRef() const override { return Base::AddRef(); }
    std::uint32_t Release() const override { return Base::Release(); }
};

} // namespace orv::quark
