#include "orv/util/PropertySet.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/quark/InterfaceData.h"

namespace orv::util {

namespace {

/// The text of a value that the map gave, which holds Strings only.
String textOf(const Reference<Object>& value)
{
    return *static_cast<const String*>(value.get());
}

/// Hands a text out as an object of its own.
Result give(const String& text, const GUID& iid, void** out)
{
    return makeReference<String>(text)->QueryInterface(iid, out);
}

} // namespace

PropertySet::PropertySet() : PropertySet(nullptr) {}

PropertySet::PropertySet(const PropertySet* parent)
    : m_parent(parent), m_properties(makeReference<collections::StringHashMap>())
{
}

PropertySet::PropertySet(const PropertySet* parent, collections::StringHashMap* properties)
    : m_parent(parent), m_properties(properties)
{
}

PropertySet::~PropertySet() noexcept(false) = default;

Reference<const quark::IPropertySet> PropertySet::getQuark(const PropertySet& set)
{
    return Reference<PropertySet>(new PropertySet(set.m_parent.get(), set.m_properties.get()));
}

const ::orv::quark::InterfaceData* PropertySet::GetComIntfMap()
{
    using namespace ::orv::quark;
    static const InterfaceData map[] = {interfaceRow<util::quark::IPropertySet, PropertySet>(),
                                        baseRow<Object>(), endRow};
    return map;
}

Result PropertySet::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

void PropertySet::set(const String& name, const String& value)
{
    // A shared text could be a view of memory that does not last.
    const auto copy = makeReference<String>(String::AcquireCopy, value);
    m_properties->put(name, copy.get());
}

String PropertySet::get(const String& name)
{
    if (const Reference<Object> value = m_properties->get(name)) return textOf(value);
    if (!m_parent) throw Exception();
    return const_cast<PropertySet*>(m_parent.get())->get(name);
}

bool PropertySet::hasProperty(const String& name) const
{
    return m_properties->containsKey(name) || (m_parent && m_parent->hasProperty(name));
}

Reference<const collections::Set<String>> PropertySet::getKeys()
{
    return m_properties->createKeySet();
}

void PropertySet::clear()
{
    // The map's own clear() lets its table grow by what was cleared.
    const auto keys = m_properties->createKeySet();
    for (const String* key : *keys) m_properties->remove(*key);
}

String PropertySet::remove(const String& name)
{
    const Reference<Object> value = m_properties->remove(name);
    return value ? textOf(value) : String();
}

Result PropertySet::Set(const char16_t* name, IORVUnknown* value)
{
    if (value == nullptr) return E_NOINTERFACE;
    return resultOf([&] {
        void* found = nullptr;
        throwIfFailed(value->QueryInterface(IORVCharBuffer::IID, &found));
        const auto buffer = Reference<ICharBuffer>::adopt(static_cast<IORVCharBuffer*>(found));
        String text;
        ORVCopyCharBuffer(&text, buffer.get());
        set(name, text);
    });
}

Result PropertySet::Get(const char16_t* name, const GUID& iid, void** value) const
{
    *value = nullptr;
    return resultOf(
        [&] { throwIfFailed(give(const_cast<PropertySet*>(this)->get(name), iid, value)); });
}

Result PropertySet::Remove(const char16_t* name, const GUID& iid, void** value)
{
    *value = nullptr;
    return resultOf([&] { throwIfFailed(give(remove(name), iid, value)); });
}

Result PropertySet::GetKeyIterator(const GUID&, void** iterator) const
{
    *iterator = nullptr;
    return E_NOTIMPL;
}

} // namespace orv::util
