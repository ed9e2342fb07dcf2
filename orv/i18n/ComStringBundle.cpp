#include "orv/i18n/ComStringBundle.h"

#include "orv/Failure.h"
#include "orv/collections/List.h"
#include "orv/collections/quark/LinkedList.h"

namespace orv::i18n {

using collections::quark::LinkedList;
using Keys = collections::List<String>;

ComStringBundle::ComStringBundle(IORVResourceBundle* bundle, Locale* locale)
    : StringBundle(locale), m_bundle(bundle)
{
}

ComStringBundle::~ComStringBundle() noexcept(false) = default;

String ComStringBundle::lookupString(const String& key)
{
    // On the heap, because a component may take a Reference to what it is given.
    const auto text = makeReference<String>();
    static_cast<void>(m_bundle->LoadCharBuffer(key.getData(), text.get()));
    return *text;
}

Reference<const collections::Collection<String>> ComStringBundle::getKeys()
{
    std::int32_t count = 0;
    throwIfFailed(m_bundle->GetCount(&count));
    if (m_keys == nullptr) {
        const auto keys = makeReference<Keys>(makeReference<LinkedList>().get());
        for (std::int32_t i = 0; i < count; ++i) {
            const auto key = makeReference<String>();
            throwIfFailed(m_bundle->GetResource(i, key.get(), nullptr));
            keys->add(key.get());
        }
        m_keys = keys;
    }
    return m_keys;
}

} // namespace orv::i18n
