#include "orv/util/RegistryKey.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/util/ByteBuffers.h"

#include <algorithm>
#include <cstring>

template class orv::collections::ConstIterator<orv::util::RegistryKey>;

namespace orv::util {
namespace {

struct RootName {
    const char16_t* name;
    ENUM_ORV_HKEY root;
};

/// What a path may begin with. The names of getKey() are those with the number of bits, and USER.
constexpr RootName rootNames[] = {
    {u"ORV_HKEY_CONFIG", ORV_HKEY_CONFIG_64},
    {u"ORV_HKEY_CONFIG_CROSS", ORV_HKEY_CONFIG_32},
    {u"ORV_HKEY_CONFIG_32", ORV_HKEY_CONFIG_32},
    {u"ORV_HKEY_CONFIG_64", ORV_HKEY_CONFIG_64},
    {u"ORV_HKEY_CLASSES", ORV_HKEY_CLASSES_64},
    {u"ORV_HKEY_CLASSES_CROSS", ORV_HKEY_CLASSES_32},
    {u"ORV_HKEY_CLASSES_32", ORV_HKEY_CLASSES_32},
    {u"ORV_HKEY_CLASSES_64", ORV_HKEY_CLASSES_64},
    {u"ORV_HKEY_USER", ORV_HKEY_USER},
};

const char16_t* nameOf(ENUM_ORV_HKEY root) noexcept
{
    switch (root) {
    case ORV_HKEY_CLASSES_32: return u"ORV_HKEY_CLASSES_32";
    case ORV_HKEY_CONFIG_32: return u"ORV_HKEY_CONFIG_32";
    case ORV_HKEY_USER: return u"ORV_HKEY_USER";
    case ORV_HKEY_CLASSES_64: return u"ORV_HKEY_CLASSES_64";
    case ORV_HKEY_CONFIG_64: return u"ORV_HKEY_CONFIG_64";
    }
    return u"";
}

[[noreturn]] void throwTypeMismatch()
{
    throwException(u"Registry type mismatch");
}

/// The bytes that most values fit into.
constexpr std::int32_t USUAL_SIZE = 1024;

} // namespace

RegistryKey::RegistryKey(ENUM_ORV_HKEY root, const String& path)
    : m_root(root), m_keyPath(String::AcquireCopy, path)
{
    m_keyPath.translate(u'/', u'\\');
    normalize();
}

RegistryKey::RegistryKey(const String& fullPath)
    : m_root(ORV_HKEY_USER), m_keyPath(String::AcquireCopy, fullPath)
{
    m_keyPath.translate(u'/', u'\\');
    normalize();
    m_root = extractORVHkey(m_keyPath);
}

RegistryKey::~RegistryKey() noexcept(false) = default;

void RegistryKey::normalize()
{
    m_keyName = m_keyPath.substring(m_keyPath.lastIndexOf(u'\\') + 1);
}

/// Takes the name of the root off `path`.
ENUM_ORV_HKEY RegistryKey::extractORVHkey(String& path)
{
    const std::int32_t backslash = path.indexOf(u'\\');
    const String name = backslash < 0 ? path : path.substring(0, backslash);
    path = backslash < 0 ? String() : path.substring(backslash + 1);
    for (const RootName& row : rootNames) {
        if (name.equals(row.name, true)) return row.root;
    }
    throwException(u"Unknown ORV_HKEY");
}

std::int32_t RegistryKey::compareTo(const Object& other) const
{
    if (&other == this) return 0;
    const auto* const key = dynamic_cast<const RegistryKey*>(&other);
    if (key == nullptr) throwCastFailed();
    return key->m_root == m_root ? 0 : m_keyPath.compare(key->m_keyPath, true);
}

bool RegistryKey::equals(const Object& other) const
{
    return &other != this && compareTo(other) == 0;
}

std::uint32_t RegistryKey::hashCode() const
{
    return m_keyPath.hashCode();
}

String RegistryKey::getKey(bool relative) const
{
    String key(relative ? u"" : nameOf(m_root));
    if (!m_keyPath.isEmpty()) key.append(u'\\').append(m_keyPath);
    return key;
}

RegistryKey RegistryKey::getParent() const
{
    const std::int32_t backslash = m_keyPath.lastIndexOf(u'\\');
    if (backslash < 0) throwException(u"No parent key");
    return {m_root, m_keyPath.substring(0, backslash)};
}

RegistryKey RegistryKey::getSubkey(const String& name) const
{
    return {m_root, m_keyPath + u"\\" + name};
}

void RegistryKey::remove() const
{
    throwIfFailed(ORVRegistryDeleteKey(m_root, m_keyPath.getData()));
}

void RegistryKey::deleteValue(const String& name) const
{
    throwIfFailed(ORVRegistryDeleteValue(m_root, m_keyPath.getData(), name.getData()));
}

bool RegistryKey::valueExists(const String& name) const
{
    return !failed(ORVRegistryGetValue(m_root, m_keyPath.getData(), name.getData(), nullptr,
                                       nullptr, nullptr));
}

ENUM_ORV_REG_TYPE RegistryKey::getValueType(const String& name) const
{
    std::uint32_t type = 0;
    throwIfFailed(
        ORVRegistryGetValue(m_root, m_keyPath.getData(), name.getData(), &type, nullptr, nullptr));
    return static_cast<ENUM_ORV_REG_TYPE>(type);
}

Result RegistryKey::tryGetValue(const String& name, ENUM_ORV_REG_TYPE type, signed char* data,
                                std::int32_t& size) const
{
    if (size < 0) return E_INVALIDARG;
    std::uint32_t found = 0;
    auto count = static_cast<std::uint32_t>(size);
    const Result result =
        ORVRegistryGetValue(m_root, m_keyPath.getData(), name.getData(), &found, data, &count);
    size = static_cast<std::int32_t>(count);
    if (!failed(result) && found != type) throwTypeMismatch();
    return result;
}

Result RegistryKey::tryGetValue(const String& name, ENUM_ORV_REG_TYPE type,
                                IByteBuffer& buffer) const
{
    signed char* data = nullptr;
    throwIfFailed(buffer.GetWriteLock(USUAL_SIZE, &data));
    std::int32_t size = USUAL_SIZE;
    Result result = S_OK;
    try {
        result = tryGetValue(name, type, data, size);
        if (result == E_BUFFER_TOO_SMALL) {
            throwIfFailed(buffer.EnsureCapacity(size, &data));
            result = tryGetValue(name, type, data, size);
        }
    } catch (...) {
        buffer.ReleaseWriteLock(-1);
        throw;
    }
    throwIfFailed(buffer.ReleaseWriteLock(failed(result) ? -1 : size));
    return result;
}

String RegistryKey::getValueString(const String& name) const
{
    RWByteBuffer bytes;
    throwIfFailed(tryGetValue(name, ORV_REG_STRING, bytes));
    const auto* const units = reinterpret_cast<const char16_t*>(bytes.GetData());
    std::int32_t length = bytes.GetLength() / static_cast<std::int32_t>(sizeof(char16_t));
    if (length > 0 && units[length - 1] == 0) --length;
    return length == 0 ? String() : String(units, length);
}

std::uint32_t RegistryKey::getValueUINT32(const String& name) const
{
    signed char bytes[sizeof(std::uint32_t)] = {};
    std::int32_t size = sizeof bytes;
    throwIfFailed(tryGetValue(name, ORV_REG_UINT32, bytes, size));
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

std::uint64_t RegistryKey::getValueUINT64(const String& name) const
{
    signed char bytes[sizeof(std::uint64_t)] = {};
    std::int32_t size = sizeof bytes;
    throwIfFailed(tryGetValue(name, ORV_REG_UINT32, bytes, size));
    std::uint64_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

std::int32_t RegistryKey::getValue(const String& name, signed char* data, std::int32_t size) const
{
    std::int32_t found = size;
    static_cast<void>(tryGetValue(name, ORV_REG_BINARY, data, found));
    return found;
}

std::int32_t RegistryKey::getValue(signed char* data, std::int32_t size) const
{
    return getValue(String(), data, size);
}

void RegistryKey::setValue(const String& name, ENUM_ORV_REG_TYPE type, const void* data,
                           std::int64_t size) const
{
    if (size < 0 || size > INT32_MAX) throwResult(E_INVALIDARG);
    throwIfFailed(ORVRegistrySetValue(m_root, m_keyPath.getData(), name.getData(), type, data,
                                      static_cast<std::uint32_t>(size)));
}

void RegistryKey::setValue(const String& name, const String& value) const
{
    const std::int64_t units = std::int64_t{value.getLength()} + 1;
    setValue(name, ORV_REG_STRING, value.getData(),
             units * static_cast<std::int64_t>(sizeof(char16_t)));
}

void RegistryKey::setValue(const String& name, std::uint32_t value) const
{
    setValue(name, ORV_REG_UINT32, &value, std::int64_t{sizeof value});
}

void RegistryKey::setValue(const String& name, std::uint64_t value) const
{
    setValue(name, ORV_REG_UINT64, &value, std::int64_t{sizeof value});
}

void RegistryKey::setValue(const String& name, const signed char* data, std::int32_t size) const
{
    setValue(name, ORV_REG_BINARY, data, std::int64_t{size});
}

void RegistryKey::setValue(const String& value) const
{
    setValue(String(), value);
}

void RegistryKey::setValue(std::uint32_t value) const
{
    setValue(String(), value);
}

void RegistryKey::setValue(std::uint64_t value) const
{
    setValue(String(), value);
}

} // namespace orv::util
