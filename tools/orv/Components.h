#pragma once

#include "orv/String.h"
#include "orv/util/RegistryKey.h"

#include <vector>

namespace tool {

/// A class that is registered with the library of a component.
struct RegisteredClass {
    orv::String progId; ///< empty where it has none
    orv::String classId;
    orv::String file;
    bool isThere; ///< whether the file can be opened
};

/// The default value of a key; empty where there is none.
orv::String defaultOf(const orv::util::RegistryKey& key);

/// Whether a file can be opened for reading.
bool canBeOpened(const orv::String& file);

/// All of them, in order of their ProgIDs.
std::vector<RegisteredClass> registeredClasses();

} // namespace tool
