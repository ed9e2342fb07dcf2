#include "orv/i18n/StringBundle.h"

#include "orv/Failure.h"
#include "orv/collections/Collection.h"
#include "orv/i18n/internal/CopyText.h"
#include "orv/quark/InterfaceData.h"

#include <algorithm>

namespace orv::i18n {

namespace {

void requirePointer(const void* pointer)
{
    if (pointer == nullptr) throwResult(E_POINTER);
}

} // namespace

StringBundle::~StringBundle() noexcept(false) = default;

const ::orv::quark::InterfaceData* StringBundle::GetComIntfMap()
{
    static const ::orv::quark::InterfaceData map[] = {
        ::orv::quark::interfaceRow<IORVResourceBundle, StringBundle>(),
        ::orv::quark::baseRow<Object>(), ::orv::quark::endRow};
    return map;
}

Result StringBundle::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

String StringBundle::getString(const String& key)
{
    String text = lookupString(key);
    if (text.isEmpty() && m_parent != nullptr) text.setAddRef(m_parent->getString(key));
    if (text.isEmpty()) throwException(u"Resource not found");
    return text;
}

Reference<const collections::Collection<String>> StringBundle::getKeys()
{
    throwResult(E_NOTIMPL);
}

Reference<Locale> StringBundle::getLocale()
{
    return m_locale;
}

/// getString() for the interface, whose operations are const.
String StringBundle::textOf(const char16_t* key) const
{
    requirePointer(key);
    return const_cast<StringBundle*>(this)->getString(key);
}

Result StringBundle::LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const
{
    return resultOf([&] { internal::copyText(textOf(key), text); });
}

Result StringBundle::LoadStringW(const char16_t* key, char16_t* buffer, std::uint32_t* length) const
{
    return resultOf([&] {
        requirePointer(buffer);
        requirePointer(length);
        const String text = textOf(key);
        const auto whole = static_cast<std::uint32_t>(text.getLength()) + 1;
        *length = std::min(*length, whole);
        ORVStrNCpyW(buffer, text.getData(), static_cast<std::int32_t>(*length));
    });
}

Result StringBundle::GetCount(std::int32_t* count) const
{
    if (count != nullptr) *count = 0;
    return E_NOTIMPL;
}

Result StringBundle::GetResource(std::int32_t, util::ICharBuffer*, util::ICharBuffer*) const
{
    return E_NOTIMPL;
}

Result StringBundle::GetLocale(IORVLocale** locale) const
{
    return resultOf([&] {
        requirePointer(locale);
        *locale = nullptr;
        *locale = const_cast<StringBundle*>(this)->getLocale().detach();
    });
}

} // namespace orv::i18n
