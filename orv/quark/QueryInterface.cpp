#include "orv/quark/InterfaceData.h"

#include "orv/ComObject.h"

namespace orv::quark {

namespace {

Result give(IORVUnknown* found, void** out)
{
    if (found != nullptr) found->AddRef();
    *out = found;
    return S_OK;
}

IORVUnknown* partOf(ComObject* object, std::uintptr_t distance)
{
    return reinterpret_cast<IORVUnknown*>(reinterpret_cast<char*>(object) + distance);
}

} // namespace

Result QueryInterfaceMap(const InterfaceData* map, ComObject* object, const GUID& iid, void** out)
{
    if (out == nullptr) return E_POINTER;
    if (equalGuid(iid, IORVUnknown::IID)) return give(object, out);

    for (const InterfaceData* row = map; !row->isEnd(); ++row) {
        if (row->iid() != nullptr && !equalGuid(*row->iid(), iid)) continue;
        if (row->isPlain()) return give(partOf(object, row->data()), out);

        const Result result =
            row->handler()(object, iid, out, static_cast<std::uint32_t>(row->data()));
        if (result == S_OK) return S_OK;
        if (failed(result) && row->iid() != nullptr) return result;
    }
    *out = nullptr;
    return E_NOINTERFACE;
}

} // namespace orv::quark
