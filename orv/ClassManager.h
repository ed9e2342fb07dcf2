#pragma once

#include "orv/Class.h"
#include "orv/GlobalLock.h"
#include "orv/util/Singleton.h"

#include <memory>

namespace orv {

/// Knows the run-time classes by name and by type.
///
/// The library fills its one manager at load; hosts may register classes of their own, while no
/// other thread looks classes up. The first registration of a name and of a type stands.
class ORV_API ClassManagerBase {
public:
    /// The class registered under `name`. Throws ClassNotFoundException with that description.
    const Class* lookupName(const char16_t* name) const;

    /// The class first registered for `type`. Throws ClassNotFoundException described by the
    /// type's readable name.
    const Class* lookupType(const std::type_info* type) const;

    /// Adds a class; a name that is known already changes nothing. `name` is kept as a pointer and
    /// must outlive the manager; `factory` may be null.
    void registerClass(const char16_t* name, const std::type_info* type, Class::Factory factory);

protected:
    ClassManagerBase();
    ClassManagerBase(const ClassManagerBase&) = delete;
    ClassManagerBase& operator=(const ClassManagerBase&) = delete;
    ~ClassManagerBase();

private:
    struct Body;
    std::unique_ptr<Body> m_body;
};

/// The one manager of the process.
using ClassManager = util::Singleton<ClassManagerBase, &g_pGlobalLock>;

} // namespace orv

extern template class orv::util::Singleton<orv::ClassManagerBase, &orv::g_pGlobalLock>;
