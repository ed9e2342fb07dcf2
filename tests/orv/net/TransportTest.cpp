#include "orv/net/AbstractTransport.h"

#include "orv/Exceptions.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteBuffer.h"
#include "orv/io/Channels.h"
#include "orv/io/LockingChannel.h"
#include "orv/io/NullOutputStream.h"
#include "orv/net/QuarkTransport.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::net::test {
namespace {

using namespace orv::test;
using util::PropertySet;

using Give = Reference<io::IChannel> (*)();

Reference<io::IChannel> good()
{
    const signed char bytes[] = {7, 8, 9};
    const auto in = makeReference<io::ByteArrayInputStream>(bytes, 3);
    return io::Channels::adaptStreams(in.get(), makeReference<io::NullOutputStream>().get());
}

struct FakeAcceptor : AbstractAcceptor {
    explicit FakeAcceptor(Give channel) : give(channel) {}
    Reference<io::IChannel> accept() override { return give(); }
    Give give;
};

struct FakeConnector : AbstractConnector {
    explicit FakeConnector(Give channel) : give(channel) {}
    Reference<io::IChannel> connect() override { return give(); }
    Give give;
};

/// Copies the property "text" to "seen", and fails as `fault` does.
struct FakeTransport : AbstractTransport {
    explicit FakeTransport(Give failing, Give channel = good) : fault(failing), give(channel) {}
    template <class Part>
    Reference<Part> make(const PropertySet& properties) const
    {
        auto& set = const_cast<PropertySet&>(properties);
        set.set(u"seen", set.get(u"text"));
        return fault() ? makeReference<Part>(give) : nullptr;
    }
    Reference<IAcceptor> createAcceptor(const PropertySet& properties) override
    {
        return make<FakeAcceptor>(properties);
    }
    Reference<IConnector> createConnector(const PropertySet& properties) override
    {
        return make<FakeConnector>(properties);
    }
    Give fault, give;
};

Reference<PropertySet> properties()
{
    const auto parent = makeReference<PropertySet>();
    parent->set(u"text", u"here");
    return makeReference<PropertySet>(parent.get());
}

TEST(Transport, carriesPropertiesAndChannelsThroughAComponent)
{
    QuarkTransport transport(makeReference<FakeTransport>(good).get());
    const auto set = properties();
    const auto acceptor = transport.createAcceptor(*set);
    EXPECT_EQ(set->remove(u"seen"), u"here") << "the parent's, in the caller's own map";
    const auto connector = transport.createConnector(*set);
    EXPECT_EQ(set->remove(u"seen"), u"here");
    for (const auto& channel : {acceptor->accept(), connector->connect(), connector->connect()}) {
        const auto buffer = makeReference<io::ByteBuffer>(9u, ORV_ENDIAN_LITTLE, false);
        EXPECT_EQ(channel->read(*buffer), 3);
        EXPECT_EQ(buffer->get(2u), 9);
        EXPECT_EQ(channel->read(*buffer), -1);
    }
}

TEST(Transport, turnsEveryFailureIntoAResult)
{
    const struct {
        Give give;
        Result result;
    } rows[] = {
        {[]() -> Reference<io::IChannel> { return nullptr; }, E_FAIL},
        {[]() -> Reference<io::IChannel> { throw ResultException(E_TIMED_OUT); }, E_TIMED_OUT},
        {[]() -> Reference<io::IChannel> { throw Exception(u"text"); }, E_FAIL},
        {[]() -> Reference<io::IChannel> { throw std::bad_alloc(); }, E_OUTOFMEMORY},
        {[]() -> Reference<io::IChannel> { throw 7; }, E_FAIL}};
    const auto set = properties();
    const auto codeOf = [](auto call) { return refusalOf<ResultException>(call).first; };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        QuarkTransport broken(makeReference<FakeTransport>(row.give).get());
        EXPECT_EQ(codeOf([&] { broken.createAcceptor(*set); }), row.result);
        EXPECT_EQ(codeOf([&] { broken.createConnector(*set); }), row.result);
        QuarkTransport whole(makeReference<FakeTransport>(good, row.give).get());
        EXPECT_EQ(codeOf([&] { whole.createAcceptor(*set)->accept(); }), row.result);
        EXPECT_EQ(codeOf([&] { whole.createConnector(*set)->connect(); }), row.result);
    }
}

TEST(Transport, answersTheInterfaceAskedForAndClearsTheOutParameter)
{
    const auto transport = makeReference<FakeTransport>(good, []() -> Reference<io::IChannel> {
        return makeReference<io::LockingChannel>(good().get(), "no component");
    });
    const auto set = PropertySet::getQuark(*properties());
    int stale = 0;
    void* out = &stale;
    EXPECT_EQ(transport->CreateAcceptor(set.get(), quark::IORVConnector2::IID, &out),
              E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(transport->CreateAcceptor(nullptr, quark::IORVAcceptor::IID, &out), E_FAIL)
        << "no text in it";
    out = &stale;
    const auto connector = makeReference<FakeConnector>(transport->give);
    EXPECT_EQ(connector->Connect(io::quark::IORVChannel::IID, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(connector->Connect(io::quark::IORVChannel::IID, nullptr), E_POINTER);
}

} // namespace
} // namespace orv::net::test
