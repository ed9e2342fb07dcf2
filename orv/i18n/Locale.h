#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/i18n/IORVLocale.h"

#include <cstdint>

namespace orv::i18n {

/// A language, with a country and a variant if there are any: the text that resources of a language
/// are looked up by.
///
///     Locale locale(u"en_US.UTF-8@euro");
///     locale.getLanguage();   // en
///     locale.toString();      // en_US@euro
///
/// Nothing is validated and no case is changed. Locales compare by their text; hashCode() stays
/// that of Object, so that equal locales are different keys. There are no names for people to read:
/// the operations that would give them throw an Exception without description, E_FAIL at the binary
/// interface.
///
/// Threads: any number may read.
class ORV_API Locale : public ::orv::quark::Implements<Object, IORVLocale> {
public:
    /// Takes the parts as they are; null is empty.
    Locale(const char16_t* language, const char16_t* country, const char16_t* variant);
    /// Reads `language_COUNTRY.codeset@variant`, of which all but the language may be missing; null
    /// is empty. The code set is dropped. The first "_", "." and "@" count wherever they stand, so
    /// neither a code set nor a variant should hold one: `en@a_b` has the language `en@a`, the
    /// variant `a_b` and no country.
    explicit Locale(const char16_t* text);
    Locale(const Locale& other) = default;
    Locale& operator=(const Locale& other) = default;
    ~Locale() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// The language, empty where there is none.
    String getLanguage() const { return m_language; }
    /// The country, empty where there is none.
    String getCountry() const { return m_country; }
    /// The variant, empty where there is none.
    String getVariant() const { return m_variant; }
    /// Language, "_" and country, "@" and variant; what is empty is left out.
    String toString() const override;
    /// The order of the two texts. Throws CastFailedException where `other` is no Locale.
    std::int32_t compareTo(const Object& other) const override;
    /// Whether `other` is a Locale of the same text.
    bool equals(const Object& other) const override;

    /// There are no names for people to read: throws an Exception without description, whatever
    /// `in` is.
    [[noreturn]] String getDisplayName(Locale* in) const;
    [[noreturn]] String getDisplayLanguage(Locale* in) const;
    [[noreturn]] String getDisplayCountry(Locale* in) const;
    [[noreturn]] String getDisplayVariant(Locale* in) const;

    /// The locale of the environment, see ORVGetDefaultLocale(), asked for at each call. Throws
    /// ResultException where the system gives none, and for a name of 40 units or more.
    static Reference<Locale> getDefault();

    Result GetLanguage(util::ICharBuffer* text) const override;
    Result GetCountry(util::ICharBuffer* text) const override;
    Result GetVariant(util::ICharBuffer* text) const override;
    Result GetDisplayName(util::ICharBuffer* text) const override;
    Result GetDisplayNameLoc(util::ICharBuffer* text, IORVLocale* locale) const override;
    Result GetDisplayLanguage(util::ICharBuffer* text) const override;
    Result GetDisplayLanguageLoc(util::ICharBuffer* text, IORVLocale* locale) const override;
    Result GetDisplayCountry(util::ICharBuffer* text) const override;
    Result GetDisplayCountryLoc(util::ICharBuffer* text, IORVLocale* locale) const override;
    Result GetDisplayVariant(util::ICharBuffer* text) const override;
    Result GetDisplayVariantLoc(util::ICharBuffer* text, IORVLocale* locale) const override;
    Result ToString(util::ICharBuffer* text) const override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

private:
    void initName();

    String m_language;
    String m_country;
    String m_variant;
    String m_name; ///< made of the others
};

} // namespace orv::i18n
