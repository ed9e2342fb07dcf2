#pragma once

#include "orv/IORVUnknown.h"

#include <atomic>

namespace orv::quark {

class Module;

/// Makes an object of one class, connected with `module`, and stores its interface `iid`. Throws
/// nothing.
using CreateInstanceQI = Result (*)(Module* module, IORVUnknown* outer, const GUID& iid,
                                    void** out);

/// Makes the class factory whose objects come from `create`, and stores its interface `iid`.
using CreateFactory = Result (*)(Module* module, CreateInstanceQI create, const GUID& iid,
                                 void** out);

/// Gives a static text, or null.
using ClassText = const char16_t* (*)();

/// One row of the table of classes that a component has.
///
/// The table is the component's own, lives as long as its module and ends with a row without a
/// class identifier. classRow() writes a row.
struct ClassData {
    const GUID* classId;         ///< null in the row behind the last one
    CreateInstanceQI create;     ///< handed on to `createFactory`
    CreateFactory createFactory; ///< makes the class factory
    ClassText progId;            ///< the name by which hosts find the class
    ClassText description;       ///< for people
    ClassText versionIndependentProgId;
    ClassText version; ///< kept for the component; the module does not ask
    /// The class factory, once somebody asked for it, with a count of the module's.
    std::atomic<IORVUnknown*> factory{nullptr};
};

} // namespace orv::quark
