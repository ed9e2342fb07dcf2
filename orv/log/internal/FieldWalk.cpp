#include "orv/log/internal/FieldWalk.h"

#include <iterator>

namespace orv::log::internal {

std::u16string_view ValueText::of(const StandardFields& fields, Standard field)
{
    switch (field) {
    case Standard::Level: return decimal(fields.level());
    case Standard::Text: return fields.text();
    case Standard::Sequence: return decimal(fields.sequence());
    case Standard::Thread: return decimal(fields.thread(), false);
    case Standard::Name: return fields.name();
    case Standard::TimeStamp: break;
    }
    const std::int32_t length = momentText(fields.time(), false, m_units);
    return {m_units, static_cast<std::size_t>(length)};
}

std::u16string_view ValueText::decimal(std::uint32_t magnitude, bool isNegative) noexcept
{
    char16_t* const end = std::end(m_units);
    char16_t* begin = end;
    do {
        *--begin = static_cast<char16_t>(u'0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (isNegative) *--begin = u'-';
    return {begin, static_cast<std::size_t>(end - begin)};
}

} // namespace orv::log::internal
