#include "orv/util/Guid.h"

#include "orv/Failure.h"

#include <iterator>
#include <memory>

namespace orv::util {

Guid::Guid(const char16_t* text)
{
    if (failed(ORVComGUIDFromString(text, &m_guid))) throwException(u"invalid GUID string");
}

Guid* Guid::Generate()
{
    auto guid = std::make_unique<Guid>();
    throwIfFailed(ORVComGenerateGUID(&guid->m_guid));
    return guid.release();
}

String Guid::toString() const
{
    char16_t units[39];
    throwIfFailed(ORVComStringFromGUID(m_guid, units, static_cast<std::int32_t>(std::size(units))));
    return String(units);
}

} // namespace orv::util
