#pragma once

#include "orv/collections/quark/Iterators.h"
#include "orv/quark/Implements.h"
#include "orv/sync/Handle.h"
#include "orv/util/RegistryKey.h"

/// \file
/// The walks behind RegistryKey::getSubkeyIterator() and getValueIterator(). They go over the names
/// as they were when the walk began.

namespace orv::util {

/// Walks the subkeys of a key, in order of name.
class ORV_API RegKeyIterator
    : public ::orv::quark::ImplementsVirtual<Object, collections::quark::ConstIterator> {
public:
    /// Throws ResultException, with 0x80070002 where the key does not exist.
    RegKeyIterator(ENUM_ORV_HKEY root, const String& path);
    RegKeyIterator(const RegKeyIterator&) = delete;
    RegKeyIterator& operator=(const RegKeyIterator&) = delete;
    ~RegKeyIterator() noexcept(false) override;

    /// Moves to the next subkey; false at the end. To be called once for each.
    bool hasNext() override;
    /// The RegistryKey that hasNext() moved to, without moving. Before the first call of it, and
    /// behind the end, it calls hasNext() itself, and throws Exception "no more keys" for nothing.
    Reference<IORVUnknown> next() override;

private:
    sync::Handle<ORVRegistryCloseEnum> m_enumeration;
    ENUM_ORV_HKEY m_root;
    String m_keyPath;
    Reference<RegistryKey> m_current;
};

/// Walks the names of the values of a key, in their order; the default value's is empty.
class ORV_API RegKeyValueIterator
    : public ::orv::quark::ImplementsVirtual<Object, collections::quark::ConstIterator> {
public:
    /// Throws ResultException, with 0x80070002 where the key does not exist.
    RegKeyValueIterator(ENUM_ORV_HKEY root, const String& path);
    RegKeyValueIterator(const RegKeyValueIterator&) = delete;
    RegKeyValueIterator& operator=(const RegKeyValueIterator&) = delete;
    ~RegKeyValueIterator() noexcept(false) override;

    /// As RegKeyIterator's.
    bool hasNext() override;
    /// The name as a String; see RegKeyIterator. The text at the end is "no more values".
    Reference<IORVUnknown> next() override;

private:
    sync::Handle<ORVRegistryCloseEnum> m_enumeration;
    Reference<String> m_current;
};

} // namespace orv::util
