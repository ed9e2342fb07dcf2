#include "orv/quark/Module.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/sync/Lock.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"
#include "platform/modules.h"

namespace orv::quark {
namespace {

using util::RegistryKey;

/// As long as a path of the system may be, with its terminator.
constexpr std::int32_t PATH_ROOM = 4096;

RegistryKey classesKey(const String& path)
{
    return RegistryKey(ORV_HKEY_CLASSES_64, path);
}

String classPath(const ClassData& row)
{
    return u"CLSID\\" + util::Guid(*row.classId).toString();
}

String orEmpty(const char16_t* text)
{
    return text == nullptr ? String() : String(text);
}

void deleteKey(const String& path)
{
    throwIfFailed(ORVRegistryDeleteKey(ORV_HKEY_CLASSES_64, path.getData()));
}

/// The keys that lead from a name to the class.
void writeName(const String& name, const String& description, const ClassData& row)
{
    classesKey(name).setValue(description);
    classesKey(name + u"\\CLSID").setValue(util::Guid(*row.classId).toString());
}

void writeClass(const ClassData& row)
{
    const char16_t* const progId = row.progId();
    const char16_t* const lastingProgId = row.versionIndependentProgId();
    const String description = orEmpty(row.description());
    const String path = classPath(row);
    if (progId != nullptr) writeName(progId, description, row);
    classesKey(path).setValue(description);
    if (progId != nullptr) classesKey(path + u"\\ProgID").setValue(String(progId));
    if (lastingProgId == nullptr) return;
    writeName(lastingProgId, description, row);
    classesKey(String(lastingProgId) + u"\\CurVer").setValue(orEmpty(progId));
    classesKey(path + u"\\VersionIndependentProgID").setValue(String(lastingProgId));
}

} // namespace

Module::Module(ClassData* classes) : m_classes(classes), m_lock("orv::quark::Module::m_lock") {}

Module::~Module() noexcept(false)
{
    for (ClassData* row = m_classes; row->classId != nullptr; ++row) {
        IORVUnknown* const factory = row->factory.exchange(nullptr);
        if (factory != nullptr) factory->Release();
    }
}

Result Module::CanUnloadNow()
{
    return GetRefCount() == 0 ? 0 : 1;
}

Result Module::GetClassObject(const GUID& clsid, const GUID& iid, void** out)
{
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    Result result = CLASS_E_CLASSNOTAVAILABLE;
    for (ClassData* row = m_classes; row->classId != nullptr; ++row) {
        result = TryGetClassObject(clsid, iid, out, row);
        if (!failed(result)) break;
    }
    return result;
}

Result Module::TryGetClassObject(const GUID& clsid, const GUID& iid, void** out, ClassData* row)
{
    if (!equalGuid(clsid, *row->classId)) return CLASS_E_CLASSNOTAVAILABLE;
    Result result = S_OK;
    IORVUnknown* factory = row->factory.load(std::memory_order_acquire);
    if (factory == nullptr) factory = makeFactory(*row, &result);
    return factory == nullptr ? result : factory->QueryInterface(iid, out);
}

/// The class factory that this or another thread has made, null with the reason in `result`.
IORVUnknown* Module::makeFactory(ClassData& row, Result* result)
{
    void* factory = nullptr;
    *result = resultOf([&] {
        const sync::Lock lock(m_lock);
        factory = row.factory.load(std::memory_order_relaxed);
        if (factory != nullptr) return S_OK;
        const Result made = row.createFactory(this, row.create, IORVUnknown::IID, &factory);
        row.factory.store(static_cast<IORVUnknown*>(factory), std::memory_order_release);
        return made;
    });
    return static_cast<IORVUnknown*>(factory);
}

Result Module::RegisterServer(const char16_t* path)
{
    Result result = S_OK;
    for (const ClassData* row = m_classes; row->classId != nullptr && !failed(result); ++row) {
        result = RegisterClassEntry(row, path);
    }
    return result;
}

Result Module::UnregisterServer()
{
    Result result = S_OK;
    for (const ClassData* row = m_classes; row->classId != nullptr && !failed(result); ++row) {
        result = UnregisterClassEntry(row);
    }
    return result;
}

Result Module::RegisterServer(ModuleHandle module)
{
    char16_t path[PATH_ROOM];
    if (failed(orvcore::moduleFile(module.address, path, PATH_ROOM))) return E_FAIL;
    return RegisterServer(path);
}

Result Module::RegisterClassEntry(const ClassData* row, const char16_t*)
{
    return resultOf([&] { writeClass(*row); });
}

Result Module::UnregisterClassEntry(const ClassData* row)
{
    return resultOf([&] {
        const char16_t* const progId = row->progId();
        const char16_t* const lastingProgId = row->versionIndependentProgId();
        if (progId != nullptr) deleteKey(progId);
        deleteKey(classPath(*row));
        if (lastingProgId != nullptr) deleteKey(lastingProgId);
    });
}

} // namespace orv::quark
