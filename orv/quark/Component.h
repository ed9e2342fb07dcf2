#pragma once

#include "orv/Export.h"
#include "orv/Result.h"

/// \file
/// What the library of a component exports, found by name: the first three, which
/// ComponentExports.h defines for a component with a table of classes, and the last three where it
/// serves catalogues.
///
/// No exception may leave any of them. Threads: any.

/// Told of a line of a catalogue that gives nothing: its number, counted from 1, or 0 for the
/// file as a whole, and what is wrong, a text that lives as long as the call.
using ORVTellBrokenLine = void (*)(void* context, std::int32_t line, const char16_t* reason);

extern "C" {

/// Stores the interface `iid` of the class factory of `clsid` in `*out`, with one count taken.
/// CLASS_E_CLASSNOTAVAILABLE, and null in `*out`, for a class that the component does not have.
ORV_API orv::Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out);

/// Writes the registration of the component's classes into the configuration store. `path` is the
/// absolute path of the component's file.
ORV_API orv::Result ORVRegisterServer(const char16_t* path);

/// Removes the registration of the component's classes.
ORV_API orv::Result ORVUnregisterServer();

/// Writes the registration of what the component serves out of the file `catalogue`. `path` is the
/// absolute path of the component's file, as `catalogue` is of its own.
ORV_API orv::Result ORVRegisterCatalogue(const char16_t* path, const char16_t* catalogue);

/// Removes the registration of a catalogue.
ORV_API orv::Result ORVUnregisterCatalogue(const char16_t* catalogue);

/// Tells of the broken lines of a catalogue, in their order. A broken line takes nothing else
/// along, and the catalogue can be registered all the same. Where it cannot, because of its file or
/// the name of it, the result says why.
ORV_API orv::Result ORVCheckCatalogue(const char16_t* catalogue, ORVTellBrokenLine tell,
                                      void* context);

} // extern "C"
