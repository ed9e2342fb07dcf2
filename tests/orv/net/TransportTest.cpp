#include "orv/net/AbstractTransport.h"

#include "orv/Exceptions.h"
#include "orv/io/LockingChannel.h"
#include "orv/io/quark/IORVChannel.h"
#include "orv/net/QuarkTransport.h"

#include <gtest/gtest.h>

// What works, and what a component refuses, is tested with a whole transport, in
// tests/components/tcptransport.

namespace orv::net::test {
namespace {

using io::quark::IORVChannel;
using util::PropertySet;
using Channel = Reference<io::IChannel>;
using Give = Channel (*)();

/// Gives what it is told.
struct FakeConnector : AbstractConnector {
    explicit FakeConnector(Give channel) : give(channel) {}
    Channel connect() override { return give(); }
    Give give;
};

/// Gives connectors of that kind, and null for acceptors.
struct FakeTransport : AbstractTransport {
    explicit FakeTransport(Give channel) : give(channel) {}
    Reference<IAcceptor> createAcceptor(const PropertySet&) override { return nullptr; }
    Reference<IConnector> createConnector(const PropertySet&) override
    {
        return makeReference<FakeConnector>(give);
    }
    Give give;
};

/// Reports success and gives nothing.
struct EmptyHanded : FakeTransport {
    using FakeTransport::FakeTransport;
    Result CreateConnector(const util::quark::IPropertySet*, const GUID&, void**) override
    {
        return S_OK;
    }
};

TEST(Transport, turnsEveryFailureIntoAResult)
{
    const std::pair<Give, Result> rows[] = {
        {[]() -> Channel { return nullptr; }, E_FAIL},
        {[]() -> Channel { throw ResultException(E_TIMED_OUT); }, E_TIMED_OUT},
        {[]() -> Channel { throw std::bad_alloc(); }, E_OUTOFMEMORY},
        {[]() -> Channel { throw 7; }, E_FAIL},
        {[]() -> Channel { return makeReference<io::LockingChannel>(nullptr, "of no component"); },
         E_NOINTERFACE}};
    const auto set = makeReference<PropertySet>();
    for (const auto& [give, result] : rows) {
        QuarkTransport fake(makeReference<FakeTransport>(give).get());
        EXPECT_EQ(resultOf([&] { fake.createConnector(*set)->connect(); }), result);
        void* out = &out;
        EXPECT_EQ(makeReference<FakeConnector>(give)->Connect(IORVChannel::IID, &out), result);
        EXPECT_EQ(out, nullptr);
    }
    const auto fake = makeReference<FakeTransport>(rows[0].first);
    EXPECT_EQ(resultOf([&] { QuarkTransport(fake.get()).createAcceptor(*set); }), E_FAIL);
    EXPECT_EQ(fake->CreateConnector(nullptr, quark::IORVConnector2::IID, nullptr), E_POINTER);
    QuarkTransport empty(makeReference<EmptyHanded>(nullptr).get());
    EXPECT_EQ(resultOf([&] { empty.createConnector(*set); }), E_FAIL);
}

} // namespace
} // namespace orv::net::test
