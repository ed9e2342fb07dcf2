#include "tests/orv/quark/FaultyComponent.h"

#include "orv/Exceptions.h"
#include "orv/Object.h"
#include "orv/String.h"
#include "orv/quark/ClassRow.h"
#include "orv/quark/Component.h"
#include "orv/quark/DllModule.h"

#include <atomic>
#include <new>
#include <stdexcept>

#include <pthread.h>

namespace {

using namespace orv;
using namespace orv::test;

std::atomic<std::int32_t> loads{0};
std::atomic<std::int32_t> factories{0};
const std::int32_t thisLoad = ++loads;

class OwnException : public ResultException {
public:
    OwnException() : ResultException(makeResult(0x80070043u)) {}
};

class Teller : public quark::Implements<Object, ITeller> {
public:
    Result QueryInterface(const GUID& iid, void** out) override
    {
        static const quark::InterfaceData map[] = {quark::interfaceRow<ITeller, Teller>(),
                                                   quark::baseRow<Object>(), quark::endRow};
        return quark::QueryInterfaceMap(map, this, iid, out);
    }
    std::int32_t timesLoaded() const override { return thisLoad; }
    std::int32_t factoriesMade() const override { return factories; }
    void throwOwn() const override { throw OwnException(); }
};

Result countedFactory(quark::Module* module, quark::CreateInstanceQI create, const GUID& iid,
                      void** out)
{
    ++factories;
    return quark::ClassFactory::Create(module, create, iid, out);
}

class FaultyFactory : public quark::ClassFactory {
public:
    explicit FaultyFactory(std::uint32_t fault) : m_fault(fault) {}

    Result CreateInstance(IORVUnknown*, const GUID&, void** out) const override
    {
        static int rest;
        switch (m_fault) {
        case THROWS: throw std::runtime_error("a component that does not keep its word");
        case THROWS_BAD_ALLOC: throw std::bad_alloc();
        case ENDS_THREAD: pthread_exit(nullptr);
        case LEAVES_REST: *out = &rest; return makeResult(0x80070043u);
        default: *out = nullptr; return S_OK;
        }
    }

private:
    std::uint32_t m_fault;
};

constexpr GUID tellerId = faultId(NONE);
constexpr GUID textId = faultId(TEXT);

quark::DllModule& module()
{
    constexpr auto none = &ComObject::GetComProgID;
    static quark::ClassData classes[] = {
        {&tellerId, &quark::createInstance<Teller>, &countedFactory, none, none, none, none},
        quark::classRow<String>(textId),
        quark::endOfClasses()};
    static quark::DllModule instance(classes);
    return instance;
}

} // namespace

Result ORVGetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    if (clsid.Data1 == THROWS_EARLY) throw 42;
    if (clsid.Data1 == NO_FACTORY) return S_OK;
    if (clsid.Data1 <= UNKNOWN_CLASS) return module().GetClassObject(clsid, iid, out);
    return makeReference<FaultyFactory>(clsid.Data1)->QueryInterface(iid, out);
}
