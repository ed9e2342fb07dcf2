#include "orv/i18n/Locale.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/i18n/internal/CopyText.h"
#include "orv/quark/InterfaceData.h"

#include <algorithm>

namespace orv::i18n {

using internal::copyText;
using util::ICharBuffer;

namespace {

constexpr std::int32_t DEFAULT_NAME_ROOM = 40;

String textOrEmpty(const char16_t* text)
{
    return text == nullptr ? String() : String(text);
}

} // namespace

Locale::Locale(const char16_t* language, const char16_t* country, const char16_t* variant)
    : m_language(textOrEmpty(language)), m_country(textOrEmpty(country)),
      m_variant(textOrEmpty(variant))
{
    initName();
}

Locale::Locale(const char16_t* text)
{
    const String whole = textOrEmpty(text);
    const std::int32_t underscore = whole.indexOf(u'_');
    const std::int32_t dot = whole.indexOf(u'.');
    const std::int32_t at = whole.indexOf(u'@');

    std::int32_t end = whole.getLength();
    if (at >= 0) {
        m_variant = whole.substring(at + 1);
        end = at;
    }
    if (dot >= 0) end = dot;
    if (underscore >= 0) {
        m_country = whole.substring(underscore + 1, std::max(end, underscore + 1));
        end = underscore;
    }
    m_language = whole.substring(0, end);
    initName();
}

Locale::~Locale() noexcept(false) = default;

void Locale::initName()
{
    m_name = m_language;
    if (!m_country.isEmpty()) m_name.append(u'_').append(m_country);
    if (!m_variant.isEmpty()) m_name.append(u'@').append(m_variant);
}

const ::orv::quark::InterfaceData* Locale::GetComIntfMap()
{
    static const ::orv::quark::InterfaceData map[] = {
        ::orv::quark::interfaceRow<IORVLocale, Locale>(), ::orv::quark::baseRow<Object>(),
        ::orv::quark::endRow};
    return map;
}

Result Locale::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

String Locale::toString() const
{
    return m_name;
}

std::int32_t Locale::compareTo(const Object& other) const
{
    if (&other == this) return 0;
    const auto* const locale = dynamic_cast<const Locale*>(&other);
    if (locale == nullptr) throwCastFailed();
    return m_name.compare(locale->m_name);
}

bool Locale::equals(const Object& other) const
{
    if (&other == this) return true;
    const auto* const locale = dynamic_cast<const Locale*>(&other);
    return locale != nullptr && m_name.equals(locale->m_name);
}

String Locale::getDisplayName(Locale*) const
{
    throw Exception();
}

String Locale::getDisplayLanguage(Locale*) const
{
    throw Exception();
}

String Locale::getDisplayCountry(Locale*) const
{
    throw Exception();
}

String Locale::getDisplayVariant(Locale*) const
{
    throw Exception();
}

Reference<Locale> Locale::getDefault()
{
    char16_t name[DEFAULT_NAME_ROOM];
    throwIfFailed(ORVGetDefaultLocale(name, DEFAULT_NAME_ROOM));
    return makeReference<Locale>(name);
}

Result Locale::GetLanguage(ICharBuffer* text) const
{
    return resultOf([&] { copyText(m_language, text); });
}

Result Locale::GetCountry(ICharBuffer* text) const
{
    return resultOf([&] { copyText(m_country, text); });
}

Result Locale::GetVariant(ICharBuffer* text) const
{
    return resultOf([&] { copyText(m_variant, text); });
}

Result Locale::ToString(ICharBuffer* text) const
{
    return resultOf([&] { copyText(m_name, text); });
}

Result Locale::GetDisplayName(ICharBuffer* text) const
{
    return GetDisplayNameLoc(text, nullptr);
}

Result Locale::GetDisplayNameLoc(ICharBuffer*, IORVLocale*) const
{
    return resultOf([&] { getDisplayName(nullptr); });
}

Result Locale::GetDisplayLanguage(ICharBuffer* text) const
{
    return GetDisplayLanguageLoc(text, nullptr);
}

Result Locale::GetDisplayLanguageLoc(ICharBuffer*, IORVLocale*) const
{
    return resultOf([&] { getDisplayLanguage(nullptr); });
}

Result Locale::GetDisplayCountry(ICharBuffer* text) const
{
    return GetDisplayCountryLoc(text, nullptr);
}

Result Locale::GetDisplayCountryLoc(ICharBuffer*, IORVLocale*) const
{
    return resultOf([&] { getDisplayCountry(nullptr); });
}

Result Locale::GetDisplayVariant(ICharBuffer* text) const
{
    return GetDisplayVariantLoc(text, nullptr);
}

Result Locale::GetDisplayVariantLoc(ICharBuffer*, IORVLocale*) const
{
    return resultOf([&] { getDisplayVariant(nullptr); });
}

} // namespace orv::i18n
