#include "orv/log/internal/UnitBuffer.h"

#include "orv/Failure.h"

#include <limits>

namespace orv::log::internal {

void UnitBuffer::grow(std::size_t more)
{
    const auto length = static_cast<std::size_t>(m_end - m_begin);
    const std::size_t needed = length + more;
    if (needed > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    std::u16string grown(needed + needed / 2, u'\0');
    std::memcpy(grown.data(), m_begin, length * sizeof(char16_t));
    m_long.swap(grown);
    m_begin = m_long.data();
    m_end = m_begin + length;
    m_room = m_long.size() - length;
}

} // namespace orv::log::internal
