#pragma once

#include "components/textbundle/Catalogue.h"

#include "orv/i18n/StringBundle.h"

namespace orv::components::textbundle {

/// The texts of a catalogue as it was when the bundle was opened.
///
/// Threads: any number.
class CatalogueBundle : public i18n::StringBundle {
public:
    /// Takes a count on both.
    CatalogueBundle(const Catalogue* catalogue, i18n::Locale* locale);
    ~CatalogueBundle() noexcept(false) override;

    /// 0x80070002 where the catalogue does not have the key.
    Result LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const override;
    /// The number of keys, those with an empty text too.
    Result GetCount(std::int32_t* count) const override;
    /// In the order of the file. E_INVALIDARG for an index past the keys.
    Result GetResource(std::int32_t index, util::ICharBuffer* key,
                       util::ICharBuffer* text) const override;

protected:
    String lookupString(const String& key) override;

private:
    Reference<const Catalogue> m_catalogue;
};

} // namespace orv::components::textbundle
