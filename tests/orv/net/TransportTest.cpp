#include "orv/net/AbstractTransport.h"

#include "orv/Exceptions.h"
#include "orv/io/LockingChannel.h"
#include "orv/io/quark/IORVChannel.h"
#include "orv/net/QuarkTransport.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

// What works is tested with a whole transport, in tests/components/tcptransport.

namespace orv::net::test {
namespace {

using util::PropertySet;

/// A way to give nothing good.
using Give = Reference<io::IChannel> (*)();

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

/// Its parts give what it is told; itself it gives that when the properties say "broken".
struct FakeTransport : AbstractTransport {
    explicit FakeTransport(Give channel) : give(channel) {}
    Reference<IAcceptor> createAcceptor(const PropertySet& properties) override
    {
        if (properties.hasProperty(u"broken") && !give()) return nullptr;
        return makeReference<FakeAcceptor>(give);
    }
    Reference<IConnector> createConnector(const PropertySet& properties) override
    {
        if (properties.hasProperty(u"broken") && !give()) return nullptr;
        return makeReference<FakeConnector>(give);
    }
    Give give;
};

TEST(Transport, turnsEveryFailureIntoAResult)
{
    const std::pair<Give, Result> rows[] = {
        {[]() -> Reference<io::IChannel> { return nullptr; }, E_FAIL},
        {[]() -> Reference<io::IChannel> { throw ResultException(E_TIMED_OUT); }, E_TIMED_OUT},
        {[]() -> Reference<io::IChannel> { throw std::bad_alloc(); }, E_OUTOFMEMORY},
        {[]() -> Reference<io::IChannel> { throw 7; }, E_FAIL}};
    const auto parent = makeReference<PropertySet>();
    parent->set(u"broken", u"yes");
    const auto broken = makeReference<PropertySet>(parent.get());
    const auto whole = makeReference<PropertySet>();
    for (const auto& [give, result] : rows) {
        SCOPED_TRACE(result);
        QuarkTransport fake(makeReference<FakeTransport>(give).get());
        const auto codeOf = [](auto call) {
            return orv::test::refusalOf<ResultException>(call).first;
        };
        EXPECT_EQ(codeOf([&] { fake.createAcceptor(*broken); }), result);
        EXPECT_EQ(codeOf([&] { fake.createConnector(*broken); }), result);
        EXPECT_EQ(codeOf([&] { fake.createAcceptor(*whole)->accept(); }), result);
        EXPECT_EQ(codeOf([&] { fake.createConnector(*whole)->connect(); }), result);
    }
}

TEST(Transport, answersTheInterfaceAskedForAndClearsTheOutParameter)
{
    const auto transport = makeReference<FakeTransport>([]() -> Reference<io::IChannel> {
        return makeReference<io::LockingChannel>(nullptr, "no channel of a component");
    });
    void* out = transport.get();
    EXPECT_EQ(transport->CreateAcceptor(nullptr, quark::IORVConnector2::IID, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    const auto connector = makeReference<FakeConnector>(transport->give);
    out = transport.get();
    EXPECT_EQ(connector->Connect(io::quark::IORVChannel::IID, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(connector->Connect(io::quark::IORVChannel::IID, nullptr), E_POINTER);
}

} // namespace
} // namespace orv::net::test
