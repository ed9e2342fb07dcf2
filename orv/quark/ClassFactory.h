#pragma once

#include "orv/ComObject.h"
#include "orv/quark/ClassData.h"
#include "orv/quark/IORVClassFactory.h"
#include "orv/quark/Implements.h"
#include "orv/quark/Module.h"

#include <cstdint>

namespace orv::quark {

/// The class factory of a component's class.
///
/// Copying takes over the count, the module and the function.
///
/// Threads: any, once it is set up.
class ORV_API ClassFactory : public Implements<ComObject, IORVClassFactory> {
public:
    /// A factory without function or module.
    ClassFactory() noexcept = default;
    ClassFactory(const ClassFactory& other) noexcept = default;
    ClassFactory& operator=(const ClassFactory& other) noexcept = default;
    ~ClassFactory() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// The function's result. E_POINTER for a null `out`, E_INVALIDARG where an object that is to
    /// be part of `outer` is asked for by another interface than IORVUnknown, E_FAIL without a
    /// function; what the function throws becomes its result.
    Result CreateInstance(IORVUnknown* outer, const GUID& iid, void** out) const override;

    /// Counts on the module, if there is one. Always S_OK.
    Result LockServer(std::int16_t lock) override;

    /// Names what makes the objects; the function is called with the module of SetComModule().
    void SetCreateInstanceQIFunc(CreateInstanceQI function) noexcept { m_create = function; }

    /// As ComObject's. Called before the factory is cached by its module, it makes the factory one
    /// of the module's living objects.
    void SetComModule(Module* module) noexcept { ComObject::SetComModule(module); }

    /// A factory on the heap that makes objects by `create`, connected with `module`: its interface
    /// `iid`. What a row of the table of classes calls.
    static Result Create(Module* module, CreateInstanceQI create, const GUID& iid, void** out);

    /// The interfaces of this class.
    static const InterfaceData* GetComIntfMap();

private:
    Module* module() const noexcept { return static_cast<Module*>(comModule()); }

    CreateInstanceQI m_create = nullptr;
};

} // namespace orv::quark
