#include "bench/common/Case.h"
#include "bench/common/Registration.h"
#include "examples/component/IGreeter.h"
#include "orv/Reference.h"
#include "orv/exec/SharedLibrary.h"
#include "orv/quark/Component.h"
#include "orv/quark/IORVClassFactory.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"

// An object of a registered component, made and released, when its library is loaded already. For
// comparison: the component's own share, the rest being the look-up; reading ProgID and path from
// the store value by value; and asking the system for the library each time.

namespace orv::bench {
namespace {

constexpr const char16_t* PROG_ID = u"Example.Greeter";

void release(void* object)
{
    static_cast<IORVUnknown*>(object)->Release();
}

void create(benchmark::State& state)
{
    const Registration registration(ORV_BENCH_COMPONENT);
    for (auto _ : state) {
        void* made = nullptr;
        ORVComCreateObjectByProgID(PROG_ID, nullptr, IGreeter::IID, &made);
        if (made == nullptr) return state.SkipWithError("no object");
        release(made);
    }
}

void readValues(benchmark::State& state)
{
    const Registration registration(ORV_BENCH_COMPONENT);
    GUID classId{};
    ORVComClassIDFromProgID(PROG_ID, &classId);
    const String key = u"CLSID\\" + util::Guid(classId).toString() + u"\\InprocServer32";
    for (auto _ : state) {
        char16_t path[4096];
        std::uint32_t size = sizeof path;
        ORVComClassIDFromProgID(PROG_ID, &classId);
        const Result result =
            ORVRegistryGetValue(ORV_HKEY_CLASSES_64, key.getData(), u"", nullptr, path, &size);
        if (failed(result)) return state.SkipWithError("not registered");
    }
}

void askSystem(benchmark::State& state)
{
    const String path(ORV_BENCH_COMPONENT);
    const exec::SharedLibrary kept(path.getData());
    for (auto _ : state) {
        exec::SharedLibrary library(path.getData());
        benchmark::DoNotOptimize(library.getSymbol(u"ORVGetClassObject"));
    }
}

void askComponent(benchmark::State& state)
{
    const Registration registration(ORV_BENCH_COMPONENT);
    GUID classId{};
    ORVComClassIDFromProgID(PROG_ID, &classId);
    exec::SharedLibrary library(String(ORV_BENCH_COMPONENT).getData());
    const auto entry =
        reinterpret_cast<decltype(&ORVGetClassObject)>(library.getSymbol(u"ORVGetClassObject"));
    for (auto _ : state) {
        void* factory = nullptr;
        void* made = nullptr;
        entry(classId, quark::IORVClassFactory::IID, &factory);
        static_cast<quark::IORVClassFactory*>(factory)->CreateInstance(nullptr, IGreeter::IID,
                                                                       &made);
        release(made);
        release(factory);
    }
}

const bool registered = [] {
    addCase("component_create/warm", LIBRARY, create);
    addCase("component_create/warm", "ref_values", readValues);
    addCase("component_create/warm", "ref_component", askComponent);
    addCase("component_create/warm", "ref_dlopen", askSystem);
    return true;
}();

} // namespace
} // namespace orv::bench
