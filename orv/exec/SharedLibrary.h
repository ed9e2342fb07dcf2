#pragma once

#include "orv/Object.h"
#include "platform/orvcore.h"

namespace orv::exec {

/// A shared library, loaded as long as the object lives.
///
///     SharedLibrary library(u"plugin");
///     auto* const start = reinterpret_cast<void (*)()>(library.getSymbol(u"pluginStart"));
///
/// Code, data and types of the library must not be used once the object is gone.
///
/// Threads: one at a time.
class ORV_API SharedLibrary : public Object {
public:
    /// Loads the library `name`: as it is given, else with ".so" behind it, else with "lib" before
    /// and ".so" behind it. A name with a slash of either kind is a path, another one is looked for
    /// where the system keeps its libraries.
    ///
    /// Throws ResultException "Failed to open shared library.", with 0x8007007E where there is
    /// none that can be loaded.
    explicit SharedLibrary(const char16_t* name);
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;
    ~SharedLibrary() noexcept(false) override;

    /// The address of an exported symbol, which may be null. Throws ResultException "Failed to get
    /// symbol.", with 0x8007007F where there is none.
    void* getSymbol(const char16_t* name);

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
};

} // namespace orv::exec
