#pragma once

#include "orv/quark/ClassData.h"
#include "orv/quark/Component.h"
#include "orv/quark/DllModule.h"

/// \file
/// The first three exports of Component.h for a component whose classes stand in a table. One of
/// its sources includes this and tells the table:
///
///     orv::quark::ClassData* orv::quark::componentClasses()
///     {
///         static ClassData classes[] = {classRow<Greeter>(CLSID_Greeter), endOfClasses()};
///         return classes;
///     }
///
/// Nothing is thrown at the host, not even what goes wrong before there is a module.

namespace orv::quark {

/// The classes of the component, which defines this function: a table in static storage, ended by
/// endOfClasses(). Called once.
[[gnu::visibility("hidden")]] ClassData* componentClasses();

/// The module of the component, made at the first use. Each component has its own, however its
/// symbols are seen, and classes may ask it for the number of their objects. Threads: any.
[[gnu::visibility("hidden")]] inline DllModule& componentModule()
{
    static DllModule instance(componentClasses());
    return instance;
}

} // namespace orv::quark

extern "C" {

[[gnu::used]] inline orv::Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    return orv::resultOf(
        [&] { return orv::quark::componentModule().GetClassObject(clsid, iid, out); });
}

[[gnu::used]] inline orv::Result ORVRegisterServer(const char16_t* path)
{
    return orv::resultOf([&] { return orv::quark::componentModule().RegisterServer(path); });
}

[[gnu::used]] inline orv::Result ORVUnregisterServer()
{
    return orv::resultOf([] { return orv::quark::componentModule().UnregisterServer(); });
}

} // extern "C"
