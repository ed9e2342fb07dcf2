#include "components/textbundle/Registration.h"

#include "components/textbundle/Catalogue.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/crypto/MD5Digest.h"
#include "orv/util/Guid.h"
#include "orv/util/RegistryKey.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace orv::components::textbundle {

using util::Guid;
using util::RegistryKey;

namespace {

constexpr const char16_t* ENDING = u".messages";
constexpr const char16_t* VALUE = u"Catalogue";
constexpr Result INVALID_DATA = makeResult(0x8007000Du);

bool isLetter(char16_t unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

bool isLetterOrDigit(char16_t unit)
{
    return isLetter(unit) || (unit >= u'0' && unit <= u'9');
}

/// Takes units that belong off the start; false where there are none.
bool takePart(std::u16string_view& text, bool (*belongs)(char16_t unit))
{
    const auto* const end = std::find_if_not(text.begin(), text.end(), belongs);
    const auto length = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(length);
    return length > 0;
}

bool isLocale(std::u16string_view text)
{
    if (!takePart(text, &isLetter)) return false;
    for (const char16_t mark : {u'_', u'@'}) {
        if (!text.starts_with(mark)) continue;
        text.remove_prefix(1);
        if (!takePart(text, &isLetterOrDigit)) return false;
    }
    return text.empty();
}

RegistryKey classesKey(const String& path)
{
    return {ORV_HKEY_CLASSES_64, path};
}

RegistryKey classKey(const GUID& classId)
{
    return classesKey(u"CLSID\\" + Guid(classId).toString());
}

/// Calls `action` and passes over that what it is about is not there.
template <class Action>
void ifThere(Action action)
{
    if (const Result result = resultOf(action); failed(result) && result != E_NOT_FOUND) {
        throwResult(result);
    }
}

/// The ProgID first, so that a class of which a part is left is not found.
void removeClass(const GUID& classId, const String& progId)
{
    ifThere([&] { classesKey(progId).remove(); });
    ifThere([&] { classKey(classId).remove(); });
}

std::vector<String> registeredClasses()
{
    std::vector<String> names;
    ifThere([&] {
        for (const auto keys = classesKey(u"CLSID").getSubkeyIterator(); keys->hasNext();) {
            names.push_back(keys->next()->getKeyName());
        }
    });
    return names;
}

/// The first 16 bytes of what a version 3 identifier is made of.
constexpr unsigned char NAMESPACE[] = {0x5B, 0x2E, 0x90, 0x1C, 0x61, 0xD7, 0x4A, 0x0F,
                                       0x9C, 0x33, 0xE8, 0x14, 0x7F, 0xA2, 0x06, 0xD5};

} // namespace

String CatalogueName::progId() const
{
    return u"Tessaly." + bundle + u".StringBundle." + locale;
}

CatalogueName nameOf(const String& path)
{
    const String file = path.substring(path.findLastOf(u"/\\", 2) + 1);
    const std::int32_t end = std::max(file.getLength() - ORVStrLenW(ENDING), 1);
    const std::int32_t dot = file.lastIndexOf(u'.', end - 1);
    CatalogueName name{file.substring(0, dot), file.substring(dot + 1, end)};
    if (dot < 1 || !file.endsWith(ENDING) || !isLocale(name.locale.getData())) {
        throw ResultException(E_INVALIDARG, u"the file is not called NAME.LOCALE.messages");
    }
    return name;
}

GUID classIdOf(const String& progId)
{
    String name(progId);
    name.toLower();
    crypto::MD5Digest digest;
    digest.update(reinterpret_cast<const signed char*>(NAMESPACE), sizeof NAMESPACE);
    const char* const bytes = name.getBytes(u"UTF-8");
    digest.update(reinterpret_cast<const signed char*>(bytes), ORVStrLenA(bytes));
    unsigned char id[16];
    digest.getDigest(reinterpret_cast<signed char*>(id), sizeof id);

    // The numbers of an identifier stand in network byte order.
    const auto two = [&](int at) { return static_cast<std::uint16_t>(id[at] << 8 | id[at + 1]); };
    GUID guid{static_cast<std::uint32_t>(two(0)) << 16 | two(2), two(4), two(6), {}};
    guid.Data3 = static_cast<std::uint16_t>((guid.Data3 & 0x0FFF) | 0x3000);
    std::copy(id + 8, id + 16, guid.Data4);
    guid.Data4[0] = static_cast<std::uint8_t>((guid.Data4[0] & 0x3F) | 0x80);
    return guid;
}

void registerCatalogue(const String& component, const String& catalogue)
{
    const String progId = nameOf(catalogue).progId();
    bool isBroken = false;
    const auto texts = Catalogue::read(catalogue, [&](auto...) { isBroken = true; });
    if (isBroken && texts->entries().empty()) throwResult(INVALID_DATA);

    const GUID classId = classIdOf(progId);
    const RegistryKey key = classKey(classId);
    const String description = u"texts of " + catalogue;
    key.setValue(description);
    key.getSubkey(u"InprocServer32").setValue(component);
    key.getSubkey(u"ProgID").setValue(progId);
    key.setValue(VALUE, catalogue);
    const RegistryKey name = classesKey(progId);
    name.setValue(description);
    // The last, for by this the class is found.
    name.getSubkey(u"CLSID").setValue(Guid(classId).toString());
}

void unregisterCatalogue(const String& catalogue)
{
    const String progId = nameOf(catalogue).progId();
    const GUID classId = classIdOf(progId);
    if (!classKey(classId).getValueString(VALUE).equals(catalogue)) throwResult(E_NOT_FOUND);
    removeClass(classId, progId);
}

void unregisterCatalogues()
{
    for (const String& name : registeredClasses()) {
        const RegistryKey key = classesKey(u"CLSID\\" + name);
        String progId;
        if (!key.valueExists(VALUE)) continue;
        ifThere([&] { progId.setAddRef(key.getSubkey(u"ProgID").getValueString(u"")); });
        // Another component may use the name of our value.
        const GUID classId = classIdOf(progId);
        if (name.equals(Guid(classId).toString(), true)) removeClass(classId, progId);
    }
}

String catalogueOf(const GUID& classId)
{
    String path;
    ifThere([&] { path.setAddRef(classKey(classId).getValueString(VALUE)); });
    if (path.isEmpty()) throwResult(CLASS_E_CLASSNOTAVAILABLE);
    return path;
}

} // namespace orv::components::textbundle
