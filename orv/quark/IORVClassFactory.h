#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

namespace orv::quark {

/// Makes the objects of one class of a component.
///
/// Threads: any.
class ORV_API IORVClassFactory : public IORVUnknown {
public:
    /// {00000001-0000-0000-C000-000000000046}
    static constexpr GUID IID{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

    /// Makes an object and stores its interface `iid` in `*out`, with one count taken. `outer` is
    /// null: an object that is to be part of another can only be asked for as IORVUnknown, and the
    /// classes of this library refuse that too, with CLASS_E_NOAGGREGATION.
    virtual Result CreateInstance(IORVUnknown* outer, const GUID& iid, void** out) const = 0;

    /// Keeps the component loaded without any object, or with 0 no longer. Calls come in pairs.
    virtual Result LockServer(std::int16_t lock) = 0;

protected:
    ~IORVClassFactory() = default;
};

} // namespace orv::quark
