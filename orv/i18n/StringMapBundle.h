#pragma once

#include "orv/collections/Fwd.h"
#include "orv/i18n/StringBundle.h"
#include "orv/sync/Mutex.h"

#include <atomic>

namespace orv::collections {
class StringHashMap;
}

namespace orv::i18n {

/// Texts in memory.
///
///     auto texts = makeReference<collections::StringHashMap>();
///     texts->put(u"welcome", makeReference<String>(u"Willkommen").get());
///     StringMapBundle bundle(texts.get(), makeReference<Locale>(u"de").get());
///
/// The map must not be changed while the bundle is in use; its keys are read once.
///
/// Threads: any number.
class ORV_API StringMapBundle : public StringBundle {
public:
    /// Takes a count on `map`, whose values are Strings, and on `locale`.
    StringMapBundle(const collections::StringHashMap* map, Locale* locale);
    StringMapBundle(const StringMapBundle&) = delete;
    StringMapBundle& operator=(const StringMapBundle&) = delete;
    ~StringMapBundle() noexcept(false) override;

    /// The keys in the order of the map, then those of the parent that are not among them.
    Reference<const collections::Collection<String>> getKeys() override;

    Result GetCount(std::int32_t* count) const override;
    /// E_FAIL for an index past the keys.
    Result GetResource(std::int32_t index, util::ICharBuffer* key,
                       util::ICharBuffer* text) const override;

protected:
    /// Throws CastFailedException for a value that is no String.
    String lookupString(const String& key) override;

private:
    void buildKeySet() const;
    void addKeysOfParent(collections::List<String>& keys) const;

    Reference<collections::StringHashMap> m_map;
    mutable sync::Mutex m_lock{"StringMapBundle::m_lock"};
    mutable std::atomic<bool> m_hasKeys{false};
    mutable Reference<collections::List<String>> m_keys; ///< constant once m_hasKeys
};

} // namespace orv::i18n
