#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/ICharBuffer.h"

namespace orv::i18n {

/// A locale as it is known across the binary interface: texts, each copied into a buffer of the
/// caller's.
///
/// Each operation returns a result, negative for failure; the buffer is then as it was.
class ORV_API IORVLocale : public IORVUnknown {
public:
    /// {F5E59574-1FAA-4F07-8583-E2C281C6F7E6}
    static constexpr GUID IID{
        0xF5E59574, 0x1FAA, 0x4F07, {0x85, 0x83, 0xE2, 0xC2, 0x81, 0xC6, 0xF7, 0xE6}};

    /// Fills `text` with the language, as "de"; empty where the locale has none.
    virtual Result GetLanguage(util::ICharBuffer* text) const = 0;
    /// Fills `text` with the country, as "AT"; empty where the locale has none.
    virtual Result GetCountry(util::ICharBuffer* text) const = 0;
    /// Fills `text` with the variant, as "euro"; empty where the locale has none.
    virtual Result GetVariant(util::ICharBuffer* text) const = 0;

    // Names for people to read: the first of each pair in the default language, the second in that
    // of `locale`.

    /// Fills `text` with a name of the whole locale.
    virtual Result GetDisplayName(util::ICharBuffer* text) const = 0;
    virtual Result GetDisplayNameLoc(util::ICharBuffer* text, IORVLocale* locale) const = 0;
    /// Fills `text` with a name of the language.
    virtual Result GetDisplayLanguage(util::ICharBuffer* text) const = 0;
    virtual Result GetDisplayLanguageLoc(util::ICharBuffer* text, IORVLocale* locale) const = 0;
    /// Fills `text` with a name of the country.
    virtual Result GetDisplayCountry(util::ICharBuffer* text) const = 0;
    virtual Result GetDisplayCountryLoc(util::ICharBuffer* text, IORVLocale* locale) const = 0;
    /// Fills `text` with a name of the variant.
    virtual Result GetDisplayVariant(util::ICharBuffer* text) const = 0;
    virtual Result GetDisplayVariantLoc(util::ICharBuffer* text, IORVLocale* locale) const = 0;

    /// The text by which the locale is found: language, "_" and country, "@" and variant.
    virtual Result ToString(util::ICharBuffer* text) const = 0;

protected:
    ~IORVLocale() = default;
};

} // namespace orv::i18n
