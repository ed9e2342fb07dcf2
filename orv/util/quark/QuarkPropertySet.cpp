#include "orv/util/quark/QuarkPropertySet.h"

#include "orv/Failure.h"
#include "orv/collections/quark/HashSet.h"

namespace orv::util::quark {

namespace {

/// Takes over an interface with the count that came with it. Null where a component gives none.
template <class Interface>
Reference<Interface> adopted(void* found)
{
    return Reference<Interface>::adopt(static_cast<Interface*>(found));
}

/// Reads the text that a component gave.
void readInto(String& text, void* found)
{
    const auto buffer = adopted<IORVCharBuffer>(found);
    if (!buffer) throwResult(E_POINTER);
    ORVCopyCharBuffer(&text, buffer.get());
}

} // namespace

QuarkPropertySet::QuarkPropertySet(IPropertySet* set, const PropertySet* parent)
    : PropertySet(parent), m_set(set)
{
}

QuarkPropertySet::~QuarkPropertySet() noexcept(false) = default;

void QuarkPropertySet::set(const String& name, const String& value)
{
    const auto text = makeReference<String>(String::AcquireCopy, value);
    throwIfFailed(m_set->Set(name.getData(), toUnknown(text.get())));
}

String QuarkPropertySet::get(const String& name)
{
    constexpr std::int32_t usual = 64;
    void* found = nullptr;
    throwIfFailed(m_set->Get(name.getData(), IORVCharBuffer::IID, &found));
    String text(usual);
    readInto(text, found);
    return text;
}

bool QuarkPropertySet::hasProperty(const String& name) const
{
    void* found = nullptr;
    if (failed(m_set->Get(name.getData(), IORVCharBuffer::IID, &found))) return false;
    adopted<IORVCharBuffer>(found);
    return true;
}

Reference<const collections::Set<String>> QuarkPropertySet::getKeys()
{
    void* found = nullptr;
    throwIfFailed(m_set->GetKeyIterator(IKeyIterator::IID, &found));
    const auto iterator = adopted<IKeyIterator>(found);
    if (!iterator) throwResult(E_POINTER);

    const auto keys = makeReference<collections::quark::HashSet>();
    void* key = nullptr;
    while (!failed(iterator->Next(IORVCharBuffer::IID, &key))) {
        const auto text = makeReference<String>();
        readInto(*text, key);
        keys->add(toUnknown(text.get()));
        key = nullptr;
    }
    return makeReference<const collections::Set<String>>(keys.get());
}

void QuarkPropertySet::clear()
{
    const auto keys = getKeys();
    for (const String* key : *keys) remove(*key);
}

String QuarkPropertySet::remove(const String& name)
{
    String text;
    void* found = nullptr;
    if (failed(m_set->Remove(name.getData(), IORVCharBuffer::IID, &found))) return text;
    readInto(text, found);
    return text;
}

} // namespace orv::util::quark
