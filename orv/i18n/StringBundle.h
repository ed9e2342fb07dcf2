#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/Fwd.h"
#include "orv/i18n/IORVResourceBundle.h"
#include "orv/i18n/Locale.h"

#include <cstdint>

namespace orv::i18n {

/// The texts of a program in one language, by key.
///
///     Reference<StringBundle> texts = StringBundle::getBundle(u"Messages", nullptr);
///     out->println(texts->getString(u"welcome"));
///
/// An empty text counts as missing. Through the binary interface failures are results: that of the
/// exception that the class operation throws, E_POINTER for a null argument.
///
/// Threads: as the derived class says.
class ORV_API StringBundle : public ::orv::quark::Implements<Object, IORVResourceBundle> {
public:
    ~StringBundle() noexcept(false) override;

    Result QueryInterface(const GUID& iid, void** out) override;

    /// The bundle called `name`, from a component registered as "Tessaly.NAME.StringBundle.LOCALE".
    ///
    /// Tried are the text of `locale`, which may be null, that of Locale::getDefault(), and
    /// "en_US": each whole, then without "@" and what follows, then without "_" and what follows.
    /// docs/message-catalogues.md tells how files of texts become such components. Throws Exception
    /// "Resource not found" where there is none.
    static Reference<StringBundle> getBundle(const String& name, Locale* locale);

    /// The text of `key`, here or in the parent. Throws Exception "Resource not found".
    virtual String getString(const String& key);
    /// The keys. Throws ResultException with E_NOTIMPL where a bundle does not know them.
    virtual Reference<const collections::Collection<String>> getKeys();
    /// The locale given at construction.
    virtual Reference<Locale> getLocale();

    Result LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const override;
    Result LoadStringW(const char16_t* key, char16_t* buffer, std::uint32_t* length) const override;
    /// E_NOTIMPL.
    Result GetCount(std::int32_t* count) const override;
    /// E_NOTIMPL.
    Result GetResource(std::int32_t index, util::ICharBuffer* key,
                       util::ICharBuffer* text) const override;
    Result GetLocale(IORVLocale** locale) const override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

protected:
    /// Takes a count on `locale`, which may be null.
    explicit StringBundle(Locale* locale) : m_locale(locale) {}

    /// The text of `key` in this bundle alone, empty where there is none.
    virtual String lookupString(const String& key) = 0;

private:
    String textOf(const char16_t* key) const;

    Reference<Locale> m_locale;

protected:
    /// The bundle to look in for what is missing here; null unless a derived class sets it.
    Reference<StringBundle> m_parent;
};

} // namespace orv::i18n
