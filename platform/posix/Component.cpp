#include "platform/orvcore.h"

#include "platform/posix/internal/ClassLookup.h"
#include "platform/posix/internal/Results.h"

#include <atomic>
#include <cxxabi.h>
#include <new>

namespace orvcore {
namespace {

constexpr ORVResult nonsense = ORVMakeResult(0x8000FFFFu);
constexpr ORVResult goingDown = systemResult(1115);

/// {00000001-0000-0000-C000-000000000046}
constexpr GUID classFactoryId{1, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

constinit std::atomic<bool> s_isGoingDown{false};

/// The slots of a class factory. A call through an abstract class would let the compiler reason
/// about who implements it; nobody here does.
struct FactorySlots {
    ORVResult (*queryInterface)(void* factory, const GUID& iid, void** out);
    std::uint32_t (*addRef)(const void* factory);
    std::uint32_t (*release)(const void* factory);
    ORVResult (*createInstance)(const void* factory, void* outer, const GUID& iid, void** out);
};

/// Calls into a component and keeps what it throws on its side, the unwinding of a cancelled
/// thread excepted, which nobody may stop.
template <class Call>
// What unwinds a thread is no object: the reference to it would be taken for one to null.
__attribute__((no_sanitize("null"))) ORVResult acrossBorder(Call call)
{
    try {
        return call();
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

/// One count of a class factory.
class Factory {
public:
    explicit Factory(void* factory) noexcept : m_factory(factory) {}
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;
    ~Factory()
    {
        acrossBorder([this]() -> ORVResult {
            slots().release(m_factory);
            return S_OK;
        });
    }

    ORVResult createInstance(void* outer, const GUID& iid, void** out) const
    {
        return acrossBorder([&] { return slots().createInstance(m_factory, outer, iid, out); });
    }

private:
    const FactorySlots& slots() const noexcept
    {
        return **static_cast<const FactorySlots* const*>(m_factory);
    }

    void* m_factory;
};

ORVResult getFactory(const ClassTarget& target, void** out)
{
    const ORVResult result =
        acrossBorder([&] { return target.entry(target.classId, classFactoryId, out); });
    return result >= 0 && *out == nullptr ? nonsense : result;
}

/// Creates an object of the class that `find` finds.
template <class Find>
ORVResult createObject(Find find, void* outer, const GUID& iid, void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (s_isGoingDown) return goingDown;
    ClassTarget target{};
    ORVResult result = find(&target);
    void* made = nullptr;
    if (result >= 0) result = getFactory(target, &made);
    if (result < 0) return result;

    const Factory factory(made);
    result = factory.createInstance(outer, iid, out);
    if (result >= 0) return *out == nullptr ? nonsense : S_OK;
    *out = nullptr;
    return result;
}

} // namespace
} // namespace orvcore

using namespace orvcore;

ORVResult ORVModuleSetInitialized(const void*, std::int32_t up) noexcept
{
    s_isGoingDown = up == 0;
    return S_OK;
}

ORVResult ORVModuleComCreateObject(const void*, const GUID& classId, void* outer, const GUID& iid,
                                   void** out)
{
    return createObject([&](ClassTarget* target) { return findByClassId(classId, target); }, outer,
                        iid, out);
}

ORVResult ORVComCreateObjectByProgID(const char16_t* progId, void* outer, const GUID& iid,
                                     void** out)
{
    return createObject(
        [&](ClassTarget* target) {
            return progId == nullptr ? E_POINTER : findByProgId(progId, target);
        },
        outer, iid, out);
}

ORVResult ORVComClassIDFromProgID(const char16_t* progId, GUID* out) noexcept
{
    if (progId == nullptr || out == nullptr) return E_POINTER;
    return findClassId(progId, out);
}
