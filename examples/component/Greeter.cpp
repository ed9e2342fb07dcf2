#include "IGreeter.h"

#include <orv/Failure>
#include <orv/Object>
#include <orv/String>
#include <orv/quark/ClassRow>
#include <orv/quark/ComponentExports>
#include <orv/quark/Implements>

namespace {

/// {C4A2E7B0-93D1-4E6B-8F05-16D2B7A90C3E}
constexpr GUID CLSID_Greeter{
    0xC4A2E7B0, 0x93D1, 0x4E6B, {0x8F, 0x05, 0x16, 0xD2, 0xB7, 0xA9, 0x0C, 0x3E}};

class Greeter : public orv::quark::Implements<orv::Object, IGreeter> {
public:
    static const char16_t* GetComProgID() { return u"Example.Greeter.1"; }
    static const char16_t* GetComVersionIndependentProgID() { return u"Example.Greeter"; }
    static const char16_t* GetComDescription() { return u"Greets people by their names"; }

    orv::Result QueryInterface(const GUID& iid, void** out) override
    {
        static const orv::quark::InterfaceData map[] = {
            orv::quark::interfaceRow<IGreeter, Greeter>(), orv::quark::baseRow<orv::Object>(),
            orv::quark::endRow};
        return orv::quark::QueryInterfaceMap(map, this, iid, out);
    }

    orv::Result Greet(const char16_t* name, orv::util::ICharBuffer* out) const override
    {
        return orv::resultOf([&] {
            orv::String greeting = u"Hello, " + orv::String(name) + u"!";
            orv::throwIfFailed(ORVCopyCharBuffer(out, &greeting));
        });
    }
};

} // namespace

orv::quark::ClassData* orv::quark::componentClasses()
{
    static ClassData classes[] = {classRow<Greeter>(CLSID_Greeter), endOfClasses()};
    return classes;
}
