#pragma once

#include "orv/IORVUnknown.h"
#include "orv/util/quark/IPropertySet.h"

namespace orv::net::quark {

/// A transport as hosts of a component see it. All operations return a result code.
class ORV_API IORVTransport : public IORVUnknown {
public:
    /// {9D15C6B0-ED08-4D46-B697-8D00A58F5660}
    static constexpr GUID IID{
        0x9D15C6B0, 0xED08, 0x4D46, {0xB6, 0x97, 0x8D, 0x00, 0xA5, 0x8F, 0x56, 0x60}};

    /// Stores an acceptor as the interface `iid`, as a rule IORVAcceptor, with a count for the
    /// caller. The properties are lent for the call.
    virtual Result CreateAcceptor(const util::quark::IPropertySet* properties, const GUID& iid,
                                  void** out) = 0;
    /// The same for a connector, as a rule IORVConnector2.
    virtual Result CreateConnector(const util::quark::IPropertySet* properties, const GUID& iid,
                                   void** out) = 0;

protected:
    ~IORVTransport() = default;
};

/// Waits for connections.
class ORV_API IORVAcceptor : public IORVUnknown {
public:
    /// {57092186-CAA5-4CCF-ACA7-3B82DDB6CA0E}
    static constexpr GUID IID{
        0x57092186, 0xCAA5, 0x4CCF, {0xAC, 0xA7, 0x3B, 0x82, 0xDD, 0xB6, 0xCA, 0x0E}};

    /// Waits for the next connection and stores it as the interface `iid`, as a rule
    /// io::quark::IORVChannel, with a count for the caller.
    virtual Result Accept(const GUID& iid, void** out) = 0;

protected:
    ~IORVAcceptor() = default;
};

/// Makes connections.
class ORV_API IORVConnector2 : public IORVUnknown {
public:
    /// {82DB3948-42E3-42B4-BF80-EC2940128383}
    static constexpr GUID IID{
        0x82DB3948, 0x42E3, 0x42B4, {0xBF, 0x80, 0xEC, 0x29, 0x40, 0x12, 0x83, 0x83}};

    /// Makes a further connection and stores it as the interface `iid`, as a rule
    /// io::quark::IORVChannel, with a count for the caller.
    virtual Result Connect(const GUID& iid, void** out) = 0;

protected:
    ~IORVConnector2() = default;
};

} // namespace orv::net::quark
