#include "orv/util/RegKeyIterator.h"

#include "orv/Failure.h"

namespace orv::util {
namespace {

constexpr std::uint32_t NAME_ROOM = 255; ///< units, the terminator included
constexpr std::uint32_t DATA_ROOM = 510; ///< bytes

} // namespace

RegKeyIterator::RegKeyIterator(ENUM_ORV_HKEY root, const String& path)
    : m_root(root), m_keyPath(path)
{
    throwIfFailed(ORVRegistryOpenKeyEnum(root, path.getData(), m_enumeration.receive()));
}

RegKeyIterator::~RegKeyIterator() noexcept(false) = default;

bool RegKeyIterator::hasNext()
{
    m_current = nullptr;
    char16_t name[NAME_ROOM];
    std::uint32_t length = NAME_ROOM;
    if (failed(ORVRegistryEnumNextKey(m_enumeration.get(), name, &length))) return false;
    const String path = m_keyPath + u"\\" + String(name, static_cast<std::int32_t>(length));
    m_current = makeReference<RegistryKey>(m_root, path);
    return true;
}

Reference<IORVUnknown> RegKeyIterator::next()
{
    if (!m_current && !hasNext()) throwException(u"no more keys");
    return toUnknown(m_current.get());
}

RegKeyValueIterator::RegKeyValueIterator(ENUM_ORV_HKEY root, const String& path)
{
    throwIfFailed(ORVRegistryOpenValueEnum(root, path.getData(), m_enumeration.receive()));
}

RegKeyValueIterator::~RegKeyValueIterator() noexcept(false) = default;

bool RegKeyValueIterator::hasNext()
{
    m_current = nullptr;
    char16_t name[NAME_ROOM];
    signed char data[DATA_ROOM];
    std::uint32_t length = NAME_ROOM;
    std::uint32_t size = DATA_ROOM;
    std::uint32_t type = 0;
    if (failed(ORVRegistryEnumNextValue(m_enumeration.get(), name, &length, &type, data, &size))) {
        return false;
    }
    m_current = makeReference<String>(name, static_cast<std::int32_t>(length));
    return true;
}

Reference<IORVUnknown> RegKeyValueIterator::next()
{
    if (!m_current && !hasNext()) throwException(u"no more values");
    return toUnknown(m_current.get());
}

Reference<collections::ConstIterator<RegistryKey>> RegistryKey::getSubkeyIterator() const
{
    const auto steps = makeReference<RegKeyIterator>(m_root, m_keyPath);
    return makeReference<collections::ConstIterator<RegistryKey>>(steps.get());
}

Reference<collections::ConstIterator<String>> RegistryKey::getValueIterator() const
{
    const auto steps = makeReference<RegKeyValueIterator>(m_root, m_keyPath);
    return makeReference<collections::ConstIterator<String>>(steps.get());
}

} // namespace orv::util
