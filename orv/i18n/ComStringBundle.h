#pragma once

#include "orv/i18n/StringBundle.h"

namespace orv::i18n {

/// The texts that a component brings along.
///
/// GetCount() and GetResource() stay those of StringBundle, whatever the component offers.
///
/// Threads: as the component allows, but for the first getKeys(), which no other may meet.
class ORV_API ComStringBundle : public StringBundle {
public:
    /// Takes a count on `bundle`.
    ComStringBundle(IORVResourceBundle* bundle, Locale* locale);
    ~ComStringBundle() noexcept(false) override;

    /// The keys, read from the component by the first call; those that it has later do not show.
    /// Throws ResultException where the component fails.
    Reference<const collections::Collection<String>> getKeys() override;

protected:
    /// Empty also where the component fails.
    String lookupString(const String& key) override;

private:
    Reference<IORVResourceBundle> m_bundle;
    Reference<collections::List<String>> m_keys; ///< null until it is asked for
};

} // namespace orv::i18n
