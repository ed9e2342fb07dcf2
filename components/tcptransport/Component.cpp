#include "orv/quark/Component.h"

#include "components/tcptransport/TcpTransport.h"
#include "orv/quark/ClassRow.h"
#include "orv/quark/DllModule.h"

namespace orv::components::tcptransport {

namespace {

quark::DllModule& module()
{
    static quark::ClassData classes[] = {quark::classRow<TcpTransport>(CLSID_TcpTransport),
                                         quark::endOfClasses()};
    static quark::DllModule instance(classes);
    return instance;
}

} // namespace

} // namespace orv::components::tcptransport

using orv::components::tcptransport::module;

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
