#include "orv/quark/ComponentExports.h"

#include "components/tcptransport/TcpTransport.h"
#include "orv/quark/ClassRow.h"

orv::quark::ClassData* orv::quark::componentClasses()
{
    using namespace components::tcptransport;
    static ClassData classes[] = {classRow<TcpTransport>(CLSID_TcpTransport), endOfClasses()};
    return classes;
}
