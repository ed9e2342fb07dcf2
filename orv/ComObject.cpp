#include "orv/ComObject.h"

namespace orv {

ComObject::ComObject(const ComObject& other) noexcept
    : m_count(other.m_count.load()), m_module(other.m_module)
{
}

ComObject& ComObject::operator=(const ComObject& other) noexcept
{
    if (this != &other) m_count.store(other.m_count.load());
    m_module = other.m_module;
    return *this;
}

const quark::InterfaceData* ComObject::GetComIntfMap()
{
    static const quark::InterfaceData map[] = {{&IORVUnknown::IID, std::uintptr_t{0}},
                                               quark::endRow};
    return map;
}

Result ComObject::QueryInterface(const GUID& iid, void** out)
{
    return quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result ComObject::NonDelegatingQueryInterface(const GUID& iid, void** out)
{
    return QueryInterface(iid, out);
}

Result ComObject::SetOuterUnknown(IORVUnknown*) noexcept
{
    return CLASS_E_NOAGGREGATION;
}

void* ComObject::operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return orvcore::allocate(size);
    } catch (...) {
        return nullptr; // Only the new-handler and exhaustion throw here.
    }
}

} // namespace orv
