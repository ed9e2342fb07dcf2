#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/Iterators.h"
#include "platform/orvcore.h"

#include <cstdint>

namespace orv::util {

class IByteBuffer;

/// Names a key of the configuration store, and reads and writes its values.
///
///     RegistryKey key(u"ORV_HKEY_USER\\Software\\Server");
///     key.setValue(u"port", std::uint32_t{8080});
///     const String name = key.getValueString(u"name");
///
/// Nothing is open: a key object may name a key that does not exist, and stays valid whatever
/// happens to the key. Writing makes the key and those above it. Names are found without regard to
/// case; both slashes divide a path.
///
/// The roots are ORV_HKEY_USER, ORV_HKEY_CONFIG and ORV_HKEY_CLASSES. The last two have two views,
/// separate trees, with _32 or _64 behind the name; the plain name is the 64-bit one, and the name
/// with _CROSS the other.
///
/// Failures of the store are ResultException, with 0x80070002 where key or value is absent and
/// 0x80070005 where this user may not write, or not read. A value of another type than asked for is
/// Exception "Registry type mismatch".
///
/// Threads: a key never changes, so any number may use it; so may they the store.
class ORV_API RegistryKey : public Object {
public:
    /// The key at `path` below `root`, which is not checked here.
    RegistryKey(ENUM_ORV_HKEY root, const String& path);
    /// The key at a path that begins with the name of its root, in any case. Throws Exception
    /// "Unknown ORV_HKEY" for another beginning, a backslash too.
    explicit RegistryKey(const String& fullPath);
    RegistryKey(const RegistryKey& other) = default;
    RegistryKey& operator=(const RegistryKey&) = delete;
    ~RegistryKey() noexcept(false) override;

    /// CastFailedException for another kind of object. Keys of one root compare equal, whatever
    /// their paths; keys of two roots by their paths, without regard to case. To tell keys apart,
    /// compare what getKey() gives.
    std::int32_t compareTo(const Object& other) const override;
    /// Whether compareTo() gives 0, but false for the very same object.
    bool equals(const Object& other) const override;
    /// The hash of the path, in its case.
    std::uint32_t hashCode() const override;

    /// The root that the key lies below.
    ENUM_ORV_HKEY getHKEY() const noexcept { return m_root; }

    /// The last part of the path. A key made from nothing but the name of a root has that.
    String getKeyName() const { return m_keyName; }

    /// The path with a backslash before it, or nothing for a root, behind the name of the root
    /// unless `relative`.
    String getKey(bool relative) const;

    /// The key above this one. Throws Exception "No parent key" where the path has one part only.
    RegistryKey getParent() const;

    /// The key `name`, which may be a path, below this one. Below a root its path begins with a
    /// backslash, for which the store does not care.
    RegistryKey getSubkey(const String& name) const;

    /// Walks the subkeys in order of name, as they are now. hasNext() moves on and is to be called
    /// once for each element; next() gives the same element again and again.
    Reference<collections::ConstIterator<RegistryKey>> getSubkeyIterator() const;
    /// Walks the names of the values in the same way.
    Reference<collections::ConstIterator<String>> getValueIterator() const;

    /// Deletes the key with all its values and subkeys. A root stays: 0x80070005.
    void remove() const;
    void deleteValue(const String& name) const;

    /// Whether the value can be read; false for every failure.
    bool valueExists(const String& name) const;
    ENUM_ORV_REG_TYPE getValueType(const String& name) const;

    /// The text of the value `name`, without the terminator that it is kept with.
    String getValueString(const String& name) const;
    /// The number of 32 bits that is the value `name`. A value of another type that has more than
    /// four bytes is ResultException with 0x80004009.
    std::uint32_t getValueUINT32(const String& name) const;
    /// A number of 32 bits, in 64. A value that was set with 64 bits is "Registry type mismatch":
    /// read it by getValueType() and the store's own operation. More than eight bytes of another
    /// type are ResultException with 0x80004009.
    std::uint64_t getValueUINT64(const String& name) const;

    /// Reads bytes into `data`, which has room for `size`, and gives the number of bytes of the
    /// value: with more of them than room nothing is read, without a value it is `size` itself.
    std::int32_t getValue(const String& name, signed char* data, std::int32_t size) const;
    /// The same for the default value of the key.
    std::int32_t getValue(signed char* data, std::int32_t size) const;

    /// Sets the value `name`, to a text, a number of 32 or 64 bits or `size` bytes. Throws
    /// ResultException with E_INVALIDARG for a `size` below 0 and a text of more than 2^31 - 1
    /// bytes.
    void setValue(const String& name, const String& value) const;
    void setValue(const String& name, std::uint32_t value) const;
    void setValue(const String& name, std::uint64_t value) const;
    void setValue(const String& name, const signed char* data, std::int32_t size) const;
    /// The same for the default value of the key.
    void setValue(const String& value) const;
    void setValue(std::uint32_t value) const;
    void setValue(std::uint64_t value) const;

private:
    static ENUM_ORV_HKEY extractORVHkey(String& path);
    void normalize();
    Result tryGetValue(const String& name, ENUM_ORV_REG_TYPE type, signed char* data,
                       std::int32_t& size) const;
    Result tryGetValue(const String& name, ENUM_ORV_REG_TYPE type, IByteBuffer& buffer) const;
    void setValue(const String& name, ENUM_ORV_REG_TYPE type, const void* data,
                  std::int64_t size) const;

    ENUM_ORV_HKEY m_root;
    String m_keyPath;
    String m_keyName;
};

} // namespace orv::util

extern template class orv::collections::ConstIterator<orv::util::RegistryKey>;
