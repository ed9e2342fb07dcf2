#include "orv/quark/Component.h"

#include "components/icodec/CharCodec.h"
#include "orv/quark/ClassRow.h"
#include "orv/quark/DllModule.h"

#include <iterator>
#include <utility>

namespace orv::components::icodec {

namespace {

template <std::size_t... ROWS>
quark::ClassData* classes(std::index_sequence<ROWS...>)
{
    static quark::ClassData rows[] = {quark::classRow<CodecOf<ROWS>>(codePages[ROWS].classId)...,
                                      quark::endOfClasses()};
    return rows;
}

quark::DllModule& module()
{
    static quark::DllModule instance(classes(std::make_index_sequence<std::size(codePages)>()));
    return instance;
}

} // namespace

} // namespace orv::components::icodec

using orv::components::icodec::module;

orv::Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    return orv::resultOf([&] { return module().GetClassObject(clsid, iid, out); });
}

orv::Result ORVRegisterServer(const char16_t* path)
{
    return orv::resultOf([&] { return module().RegisterServer(path); });
}

orv::Result ORVUnregisterServer()
{
    return orv::resultOf([] { return module().UnregisterServer(); });
}
