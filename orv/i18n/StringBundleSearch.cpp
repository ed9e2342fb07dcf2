#include "orv/Failure.h"
#include "orv/i18n/ComStringBundle.h"
#include "orv/i18n/StringBundle.h"
#include "orv/internal/ModuleToken.h"

namespace orv::i18n {

namespace {

/// The bundle for exactly this text of a locale, or null.
Reference<StringBundle> findBundle(const String& name, const String& locale)
{
    const String progId = u"Tessaly." + name + u".StringBundle." + locale;
    GUID classId;
    if (failed(ORVComClassIDFromProgID(progId.getData(), &classId))) return nullptr;
    void* created = nullptr;
    if (failed(ORVModuleComCreateObject(::orv::internal::moduleToken(), classId, nullptr,
                                        IORVResourceBundle::IID, &created))) {
        return nullptr;
    }
    const auto component =
        Reference<IORVResourceBundle>::adopt(static_cast<IORVResourceBundle*>(created));
    const auto found = makeReference<Locale>(locale.getData());
    return makeReference<ComStringBundle>(component.get(), found.get());
}

/// The bundle for a locale, else for it without its variant, else for its language.
Reference<StringBundle> findNearest(const String& name, String locale)
{
    Reference<StringBundle> bundle = findBundle(name, locale);
    for (const char16_t end : {u'@', u'_'}) {
        const std::int32_t place = locale.indexOf(end);
        if (bundle != nullptr || place < 0) continue;
        locale = locale.substring(0, place);
        bundle = findBundle(name, locale);
    }
    return bundle;
}

} // namespace

Reference<StringBundle> StringBundle::getBundle(const String& name, Locale* locale)
{
    Reference<StringBundle> bundle;
    if (locale != nullptr) bundle = findNearest(name, locale->toString());
    if (bundle == nullptr) bundle = findNearest(name, Locale::getDefault()->toString());
    if (bundle == nullptr) bundle = findNearest(name, u"en_US");
    if (bundle == nullptr) throwException(u"Resource not found");
    return bundle;
}

} // namespace orv::i18n
