#include "orv/net/QueryKey.h"

#include "orv/Failure.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>

namespace orv::net {

QueryKey& QueryKey::operator=(const QueryKey& other)
{
    String::operator=(other);
    m_lowerCase.clear();
    return *this;
}

QueryKey::~QueryKey() noexcept(false) = default;

const String& QueryKey::lowerCase() const
{
    if (!m_lowerCase.isEmpty() || isEmpty()) return m_lowerCase;
    m_lowerCase.setAddRef(*this);
    const char16_t* const units = getData();
    const bool isLower = std::all_of(units, units + getLength(), [](char16_t unit) {
        return ::orv::internal::foldedUnit(unit) == unit;
    });
    if (!isLower) m_lowerCase.toLower();
    return m_lowerCase;
}

std::int32_t QueryKey::compareTo(const Object& other) const
{
    if (&other == this) return 0;
    const auto* const key = dynamic_cast<const String*>(&other);
    if (key == nullptr) throwCastFailed();
    return lowerCase().compare(*key, true);
}

bool QueryKey::equals(const Object& other) const
{
    if (&other == this) return true;
    const auto* const key = dynamic_cast<const String*>(&other);
    return key != nullptr && lowerCase().equals(*key, true);
}

std::uint32_t QueryKey::hashCode() const
{
    return lowerCase().hashCode();
}

} // namespace orv::net

namespace orv::collections {

template class ConstIterator<net::QueryKey>;
template class Iterator<net::QueryKey>;
template class Collection<net::QueryKey>;
template class Set<net::QueryKey>;

} // namespace orv::collections
