#include "orv/net/AbstractTransport.h"

#include "orv/Failure.h"
#include "orv/quark/InterfaceData.h"
#include "orv/util/quark/QuarkPropertySet.h"

namespace orv::net {

namespace {

/// Stores what `make` gives as the interface `iid`. A null `out` is for the object to refuse.
template <class Make>
Result handOut(const GUID& iid, void** out, Make make)
{
    if (out != nullptr) *out = nullptr;
    Result answer = E_FAIL;
    const Result made = resultOf([&] {
        if (const auto object = make()) answer = object->QueryInterface(iid, out);
    });
    return failed(made) ? made : answer;
}

/// The map of a class whose own interface is one.
template <class Interface, class Class>
const ::orv::quark::InterfaceData* mapOf()
{
    using namespace ::orv::quark;
    static const InterfaceData map[] = {interfaceRow<Interface, Class>(), baseRow<Object>(),
                                        endRow};
    return map;
}

/// Lends a component's set, or an empty one where it gave none.
template <class Use>
auto withSet(const util::quark::IPropertySet* properties, Use use)
{
    if (properties == nullptr) return use(util::PropertySet());
    // Reading takes a set that could be written too.
    auto* const set = const_cast<util::quark::IPropertySet*>(properties);
    return use(util::quark::QuarkPropertySet(set, nullptr));
}

} // namespace

AbstractTransport::AbstractTransport() = default;

AbstractTransport::~AbstractTransport() noexcept(false) = default;

const ::orv::quark::InterfaceData* AbstractTransport::GetComIntfMap()
{
    return mapOf<quark::IORVTransport, AbstractTransport>();
}

Result AbstractTransport::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result AbstractTransport::CreateAcceptor(const util::quark::IPropertySet* properties,
                                         const GUID& iid, void** out)
{
    return handOut(iid, out, [&] {
        return withSet(properties, [this](const auto& set) { return createAcceptor(set); });
    });
}

Result AbstractTransport::CreateConnector(const util::quark::IPropertySet* properties,
                                          const GUID& iid, void** out)
{
    return handOut(iid, out, [&] {
        return withSet(properties, [this](const auto& set) { return createConnector(set); });
    });
}

AbstractAcceptor::AbstractAcceptor() = default;

AbstractAcceptor::~AbstractAcceptor() noexcept(false) = default;

const ::orv::quark::InterfaceData* AbstractAcceptor::GetComIntfMap()
{
    return mapOf<quark::IORVAcceptor, AbstractAcceptor>();
}

Result AbstractAcceptor::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result AbstractAcceptor::Accept(const GUID& iid, void** out)
{
    return handOut(iid, out, [this] { return accept(); });
}

AbstractConnector::AbstractConnector() = default;

AbstractConnector::~AbstractConnector() noexcept(false) = default;

const ::orv::quark::InterfaceData* AbstractConnector::GetComIntfMap()
{
    return mapOf<quark::IORVConnector2, AbstractConnector>();
}

Result AbstractConnector::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

Result AbstractConnector::Connect(const GUID& iid, void** out)
{
    return handOut(iid, out, [this] { return connect(); });
}

} // namespace orv::net
