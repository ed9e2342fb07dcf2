#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/quark/ClassRow.h"
#include "orv/quark/Component.h"
#include "orv/quark/DllModule.h"

#include <new>
#include <stdexcept>

#include <pthread.h>

// The first number of a class identifier says what goes wrong with the class; the rest is zero.

namespace {

using namespace orv;

struct Thrower : Object {
    std::int32_t compareTo(const Object&) const override { throwResult(makeResult(0x80070043u)); }
};

struct FaultyFactory : quark::ClassFactory {
    explicit FaultyFactory(std::uint32_t faultOf) : fault(faultOf) {}
    Result CreateInstance(IORVUnknown*, const GUID&, void** out) const override
    {
        switch (fault) {
        case 5: throw std::runtime_error("a component that does not keep its word");
        case 6: throw std::bad_alloc();
        case 7: pthread_exit(nullptr);
        case 8: *out = out; return makeResult(0x80070043u);
        default: return S_OK;
        }
    }
    std::uint32_t fault;
};

quark::DllModule& module()
{
    static constexpr GUID thrower{0, 0, 0, {}}, text{1, 0, 0, {}};
    static quark::ClassData classes[] = {quark::classRow<Thrower>(thrower),
                                         quark::classRow<String>(text), quark::endOfClasses()};
    static quark::DllModule instance(classes);
    return instance;
}

} // namespace

Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    if (clsid.Data1 == 3) throw 42;
    if (clsid.Data1 == 4) return S_OK;
    if (clsid.Data1 < 3) return module().GetClassObject(clsid, iid, out);
    return makeReference<FaultyFactory>(clsid.Data1)->QueryInterface(iid, out);
}
