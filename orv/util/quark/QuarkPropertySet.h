#pragma once

#include "orv/util/PropertySet.h"

namespace orv::util::quark {

/// The property set of a component, for callers that want a PropertySet.
///
/// Names and values are the component's; the parent answers for none of them. getKeys() and clear()
/// need a component that can list its names: one that wraps a plain PropertySet cannot, and they
/// throw ResultException with E_NOTIMPL.
///
/// Ownership: holds a count on the component. Errors: ResultException with its result, but for
/// hasProperty() and remove(), which take every failure as "not there". Threads: one at a time.
class ORV_API QuarkPropertySet : public PropertySet {
public:
    QuarkPropertySet(IPropertySet* set, const PropertySet* parent);
    ~QuarkPropertySet() noexcept(false) override;

    void set(const String& name, const String& value) override;
    String get(const String& name) override;
    bool hasProperty(const String& name) const override;
    Reference<const collections::Set<String>> getKeys() override;
    void clear() override;
    String remove(const String& name) override;

private:
    Reference<IPropertySet> m_set;
};

} // namespace orv::util::quark
