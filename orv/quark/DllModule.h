#pragma once

#include "orv/quark/Module.h"

namespace orv::quark {

/// The module of a component that is loaded into its hosts. ComponentExports.h has one made.
class ORV_API DllModule : public Module {
public:
    using Module::Module;
    ~DllModule() noexcept(false) override;

protected:
    /// Writes the keys of Module and CLSID\\{guid}\\InprocServer32, whose default value is `path`.
    /// E_POINTER for a null `path`, with nothing written.
    Result RegisterClassEntry(const ClassData* row, const char16_t* path) override;
};

} // namespace orv::quark
