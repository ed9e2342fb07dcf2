#pragma once

#include "orv/exec/SharedLibrary.h"
#include "orv/quark/Component.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

namespace orv::test {

/// A configuration store of the test's own, in which it registers components.
class ScratchRegistry {
public:
    /// The store's folder, for what else the test wants to put there.
    const TemporaryFolder& folder() const noexcept { return m_folder; }

    /// Has the component in `file` register itself, as `orv component register` does.
    static Result registerComponent(const char* file)
    {
        const String path(file);
        exec::SharedLibrary library(path.getData());
        void* const entry = library.getSymbol(u"ORVRegisterServer");
        return reinterpret_cast<decltype(&ORVRegisterServer)>(entry)(path.getData());
    }

private:
    TemporaryFolder m_folder;
    ScopedVariable m_variable{"ORV_REGISTRY", (m_folder.path() / "store.db").c_str()};
};

} // namespace orv::test
