#include "orv/quark/ClassFactory.h"

#include "orv/Reference.h"

namespace orv::quark {

ClassFactory::~ClassFactory() noexcept(false) = default;

const InterfaceData* ClassFactory::GetComIntfMap()
{
    static const InterfaceData map[] = {interfaceRow<IORVClassFactory, ClassFactory>(), endRow};
    return map;
}

Result ClassFactory::QueryInterface(const GUID& iid, void** out)
{
    return QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result ClassFactory::CreateInstance(IORVUnknown* outer, const GUID& iid, void** out) const
{
    if (out == nullptr) return E_POINTER;
    if (outer != nullptr && !equalGuid(iid, IORVUnknown::IID)) {
        *out = nullptr;
        return E_INVALIDARG;
    }
    if (m_create == nullptr) return E_FAIL;
    return resultOf([&] { return m_create(module(), outer, iid, out); });
}

Result ClassFactory::LockServer(std::int16_t lock)
{
    if (module() == nullptr) return S_OK;
    if (lock != 0) {
        module()->AddRef();
    } else {
        module()->Release();
    }
    return S_OK;
}

Result ClassFactory::Create(Module* module, CreateInstanceQI create, const GUID& iid, void** out)
{
    return resultOf([&] {
        auto* const made = new ClassFactory;
        made->SetCreateInstanceQIFunc(create);
        made->SetComModule(module);
        return Reference<ClassFactory>(made)->QueryInterface(iid, out);
    });
}

} // namespace orv::quark
