#include "components/textbundle/CatalogueBundle.h"

#include <algorithm>

namespace orv::components::textbundle {

namespace {

Result copy(std::u16string_view from, util::ICharBuffer* to)
{
    if (to == nullptr) return E_POINTER;
    const auto length = static_cast<std::int32_t>(from.size());
    char16_t* units = nullptr;
    if (const Result result = to->GetWriteLock(length, &units); failed(result)) return result;
    std::copy(from.begin(), from.end(), units);
    return to->ReleaseWriteLock(length);
}

} // namespace

CatalogueBundle::CatalogueBundle(const Catalogue* catalogue, i18n::Locale* locale)
    : StringBundle(locale), m_catalogue(catalogue)
{
}

CatalogueBundle::~CatalogueBundle() noexcept(false) = default;

Result CatalogueBundle::LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const
{
    if (key == nullptr) return E_POINTER;
    const auto length = static_cast<std::size_t>(ORVStrLenW(key));
    const Catalogue::Entry* const entry = m_catalogue->find({key, length});
    return entry == nullptr ? E_NOT_FOUND : copy(entry->text, text);
}

Result CatalogueBundle::GetCount(std::int32_t* count) const
{
    if (count == nullptr) return E_POINTER;
    *count = static_cast<std::int32_t>(m_catalogue->entries().size());
    return S_OK;
}

Result CatalogueBundle::GetResource(std::int32_t index, util::ICharBuffer* key,
                                    util::ICharBuffer* text) const
{
    const auto& entries = m_catalogue->entries();
    if (index < 0 || static_cast<std::size_t>(index) >= entries.size()) return E_INVALIDARG;
    const Catalogue::Entry& entry = entries[static_cast<std::size_t>(index)];
    const Result result = copy(entry.key, key);
    return failed(result) || text == nullptr ? result : copy(entry.text, text);
}

String CatalogueBundle::lookupString(const String& key)
{
    const Catalogue::Entry* const entry = m_catalogue->find(key.getData());
    if (entry == nullptr) return String();
    return String(entry->text.data(), static_cast<std::int32_t>(entry->text.size()));
}

} // namespace orv::components::textbundle
