#include "orv/log/internal/UnitBuffer.h"

#include "orv/Failure.h"

#include <limits>
#include <utility>

namespace orv::log::internal {

void UnitBuffer::grow(std::size_t more)
{
    const auto length = static_cast<std::size_t>(m_end - m_begin);
    const std::size_t needed = length + more;
    if (needed > std::numeric_limits<std::int32_t>::max()) throwOutOfMemory();
    const std::size_t room = needed + needed / 2;
    OwningArray<char16_t> grown(room);
    std::memcpy(grown.get(), m_begin, length * sizeof(char16_t));
    m_long = std::move(grown);
    m_begin = m_long.get();
    m_end = m_begin + length;
    m_room = room - length;
}

} // namespace orv::log::internal
