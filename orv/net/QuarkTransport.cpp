#include "orv/net/QuarkTransport.h"

#include "orv/Failure.h"
#include "orv/io/Channels.h"

namespace orv::net {

namespace {

/// The object that `ask` stores, with the count that comes with it.
template <class Interface, class Ask>
Reference<Interface> obtain(Ask ask)
{
    void* object = nullptr;
    throwIfFailed(ask(Interface::IID, &object));
    if (object == nullptr) throwResult(E_FAIL);
    return Reference<Interface>::adopt(static_cast<Interface*>(object));
}

/// A channel that `ask` stores, for callers of the class.
template <class Ask>
Reference<io::IChannel> obtainChannel(Ask ask)
{
    return io::Channels::adaptQuarkChannel(obtain<io::quark::IORVChannel>(ask).get());
}

} // namespace

QuarkTransport::QuarkTransport(const String& progId)
    : m_transport(obtain<quark::IORVTransport>([&](const GUID& iid, void** out) {
          return ORVComCreateObjectByProgID(progId.getData(), nullptr, iid, out);
      }))
{
}

QuarkTransport::QuarkTransport(quark::IORVTransport* transport) : m_transport(transport) {}

QuarkTransport::~QuarkTransport() noexcept(false) = default;

Reference<IConnector> QuarkTransport::createConnector(const util::PropertySet& properties)
{
    const auto set = util::PropertySet::getQuark(properties);
    const auto made = obtain<quark::IORVConnector2>([&](const GUID& iid, void** out) {
        return m_transport->CreateConnector(set.get(), iid, out);
    });
    return makeReference<QuarkConnector>(made.get());
}

Reference<IAcceptor> QuarkTransport::createAcceptor(const util::PropertySet& properties)
{
    const auto set = util::PropertySet::getQuark(properties);
    const auto made = obtain<quark::IORVAcceptor>([&](const GUID& iid, void** out) {
        return m_transport->CreateAcceptor(set.get(), iid, out);
    });
    return makeReference<QuarkAcceptor>(made.get());
}

QuarkAcceptor::QuarkAcceptor(quark::IORVAcceptor* acceptor) : m_acceptor(acceptor) {}

QuarkAcceptor::~QuarkAcceptor() noexcept(false) = default;

Reference<io::IChannel> QuarkAcceptor::accept()
{
    return obtainChannel(
        [this](const GUID& iid, void** out) { return m_acceptor->Accept(iid, out); });
}

QuarkConnector::QuarkConnector(quark::IORVConnector2* connector) : m_connector(connector) {}

QuarkConnector::~QuarkConnector() noexcept(false) = default;

Reference<io::IChannel> QuarkConnector::connect()
{
    return obtainChannel(
        [this](const GUID& iid, void** out) { return m_connector->Connect(iid, out); });
}

} // namespace orv::net
