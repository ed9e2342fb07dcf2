#include "orv/quark/DllModule.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"

namespace orv::quark {

DllModule::~DllModule() noexcept(false) = default;

Result DllModule::RegisterClassEntry(const ClassData* row, const char16_t* path)
{
    if (path == nullptr) return E_POINTER;
    const Result result = Module::RegisterClassEntry(row, path);
    if (failed(result)) return result;
    return resultOf([&] {
        const String guid = util::Guid(*row->classId).toString();
        const util::RegistryKey key(ORV_HKEY_CLASSES_64, u"CLSID\\" + guid + u"\\InprocServer32");
        key.setValue(String(path));
    });
}

} // namespace orv::quark
