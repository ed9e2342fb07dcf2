#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/quark/Implements.h"
#include "orv/util/quark/IPropertySet.h"

namespace orv::util {

/// Names with values, both texts, over a parent that answers for the names that are not here.
///
///     auto defaults = makeReference<PropertySet>();
///     defaults->set(u"port", u"80");
///     auto own = makeReference<PropertySet>(defaults.get());
///     own->get(u"port");                      // "80"
///     own->set(u"port", u"8080");             // defaults keeps its own
///
/// Writing, removing and listing go to this set alone. Components see it as an IPropertySet, which
/// does the same through the operations of the class; it has no iterator over the names there:
/// GetKeyIterator() gives E_NOTIMPL.
///
/// Ownership: holds a count on its parent, so parents live on the heap. Errors of the interface:
/// the result of what the class throws; E_NOINTERFACE for a value that is null or no text. Threads:
/// one at a time, for the sets together that share their names by getQuark().
class ORV_API PropertySet : public ::orv::quark::Implements<Object, quark::IPropertySet> {
public:
    /// An empty set without a parent.
    PropertySet();
    /// An empty set over `parent`, which may be null.
    explicit PropertySet(const PropertySet* parent);
    PropertySet(const PropertySet&) = delete;
    PropertySet& operator=(const PropertySet&) = delete;
    ~PropertySet() noexcept(false) override;

    /// A further set with the parent of `set` and its very names and values, for a component: what
    /// either changes, both see. Of a QuarkPropertySet it shows none, since those are not in it.
    static Reference<const quark::IPropertySet> getQuark(const PropertySet& set);

    Result QueryInterface(const GUID& iid, void** out) override;

    /// Gives `name` a copy of `value`, here and not in the parent.
    virtual void set(const String& name, const String& value);
    /// The value of `name` here, else in the nearest parent that has it. Throws Exception without
    /// description where none has.
    virtual String get(const String& name);
    /// Whether get() finds the name.
    virtual bool hasProperty(const String& name) const;
    /// The names of this set as they are now, without those of the parent and in no order.
    virtual Reference<const collections::Set<String>> getKeys();
    /// Takes all names out of this set.
    virtual void clear();
    /// Takes `name` out of this set and returns its value, the empty text where it was not in it.
    /// Where the parent has it, get() finds that one from now on.
    virtual String remove(const String& name);

    Result Set(const char16_t* name, IORVUnknown* value) override;
    Result Get(const char16_t* name, const GUID& iid, void** value) const override;
    Result Remove(const char16_t* name, const GUID& iid, void** value) override;
    Result GetKeyIterator(const GUID& iid, void** iterator) const override;

    /// The interfaces of this class.
    static const ::orv::quark::InterfaceData* GetComIntfMap();

private:
    PropertySet(const PropertySet* parent, collections::StringHashMap* properties);

    Reference<const PropertySet> m_parent;
    Reference<collections::StringHashMap> m_properties;
};

} // namespace orv::util
