#include <orv/ComObject>
#include <orv/Reference>
#include <orv/String>
#include <orv/collections/quark/HashMap>
#include <orv/quark/Implements>

namespace {

/// A class of the host's with several roots.
class Entry final
    : public orv::quark::ImplementsVirtual<orv::ComObject, orv::collections::quark::Iterator> {
public:
    bool hasNext() override { return false; }
    orv::Reference<orv::IORVUnknown> next() override { return nullptr; }
    void remove() override {}
};

} // namespace

int main()
{
    const auto map = orv::makeReference<orv::collections::quark::HashMap>();
    const auto key = orv::makeReference<orv::String>(u"abc");
    const auto value = orv::makeReference<Entry>();
    map->put(orv::toUnknown(key.get()), value->GetUnknown());
    return map->getSize() == 1 ? 0 : 1;
}
