#include "orv/i18n/StringMapBundle.h"

#include "orv/Failure.h"
#include "orv/collections/List.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/i18n/internal/CopyText.h"
#include "orv/sync/Lock.h"

namespace orv::i18n {

using collections::StringHashMap;
using collections::quark::ArrayList;
using Keys = collections::List<String>;

// Looking up changes no map.
StringMapBundle::StringMapBundle(const StringHashMap* map, Locale* locale)
    : StringBundle(locale), m_map(const_cast<StringHashMap*>(map))
{
}

StringMapBundle::~StringMapBundle() noexcept(false) = default;

String StringMapBundle::lookupString(const String& key)
{
    const Reference<Object> value = m_map->get(key);
    if (value == nullptr) return String();
    const auto* const text = dynamic_cast<const String*>(value.get());
    if (text == nullptr) throwCastFailed();
    return *text;
}

void StringMapBundle::buildKeySet() const
{
    if (m_hasKeys.load(std::memory_order_acquire)) return;
    const sync::Lock lock(m_lock);
    if (m_hasKeys.load(std::memory_order_relaxed)) return;

    const auto keys = makeReference<Keys>(makeReference<ArrayList>().get());
    keys->addAll(*m_map->createKeySet());
    if (m_parent != nullptr) addKeysOfParent(*keys);
    m_keys = keys;
    m_hasKeys.store(true, std::memory_order_release);
}

void StringMapBundle::addKeysOfParent(Keys& keys) const
{
    std::int32_t count = 0;
    throwIfFailed(m_parent->GetCount(&count));
    for (std::int32_t i = 0; i < count; ++i) {
        const auto key = makeReference<String>();
        throwIfFailed(m_parent->GetResource(i, key.get(), nullptr));
        if (!m_map->containsKey(*key)) keys.add(key.get());
    }
}

Reference<const collections::Collection<String>> StringMapBundle::getKeys()
{
    buildKeySet();
    return m_keys;
}

Result StringMapBundle::GetCount(std::int32_t* count) const
{
    return resultOf([&] {
        if (count == nullptr) throwResult(E_POINTER);
        *count = 0;
        buildKeySet();
        *count = m_keys->getSize();
    });
}

Result StringMapBundle::GetResource(std::int32_t index, util::ICharBuffer* key,
                                    util::ICharBuffer* text) const
{
    return resultOf([&] {
        buildKeySet();
        const Reference<String> found = m_keys->get(index);
        internal::copyText(*found, key);
        if (text != nullptr) throwIfFailed(LoadCharBuffer(found->getData(), text));
    });
}

} // namespace orv::i18n
