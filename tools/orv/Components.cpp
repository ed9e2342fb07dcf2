#include "tools/orv/Components.h"

#include "orv/Failure.h"
#include "orv/util/RegistryKey.h"

#include <algorithm>

namespace tool {

using orv::String;
using orv::util::RegistryKey;

String defaultOf(const RegistryKey& key)
{
    return key.valueExists(u"") ? key.getValueString(u"") : String();
}

bool canBeOpened(const String& file)
{
    constexpr std::uint32_t toRead = 0x80000000u;
    ORVHandle handle = ORV_NO_HANDLE;
    if (orv::failed(ORVFileOpen(file.getData(), toRead, 0, &handle))) return false;
    ORVFileClose(handle);
    return true;
}

std::vector<RegisteredClass> registeredClasses()
{
    std::vector<RegisteredClass> found;
    const RegistryKey root(ORV_HKEY_CLASSES_64, u"CLSID");
    ORVHandle probe = ORV_NO_HANDLE;
    const orv::Result result = ORVRegistryOpenKeyEnum(ORV_HKEY_CLASSES_64, u"CLSID", &probe);
    if (result == orv::E_NOT_FOUND) return found;
    orv::throwIfFailed(result);
    ORVRegistryCloseEnum(probe);
    for (const auto keys = root.getSubkeyIterator(); keys->hasNext();) {
        const auto key = keys->next();
        const String file = defaultOf(key->getSubkey(u"InprocServer32"));
        if (file.getLength() == 0) continue;
        found.push_back(
            {defaultOf(key->getSubkey(u"ProgID")), key->getKeyName(), file, canBeOpened(file)});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const RegisteredClass& a, const RegisteredClass& b) {
                         return ORVStrCmpW(a.progId.getData(), b.progId.getData()) < 0;
                     });
    return found;
}

} // namespace tool
