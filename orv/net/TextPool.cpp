#include "orv/net/TextPool.h"

#include "orv/Failure.h"
#include "orv/net/internal/EscapedText.h"

#include <limits>

namespace orv::net {

void TextPool::requireBounds(std::size_t used, std::size_t more)
{
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    if (more > most - used) throwOutOfMemory();
}

/// A first text gets what it needs, later ones as much again.
void TextPool::reserveFirst(std::size_t units)
{
    requireBounds(0, units);
    m_units.reserve(units);
}

std::u16string TextPool::emptyBlock(std::size_t used, std::size_t more)
{
    requireBounds(used, more);
    std::u16string block;
    block.reserve(used == 0 ? more : 2 * (used + more));
    return block;
}

TextPool::Place TextPool::add(View text)
{
    const auto start = static_cast<std::int32_t>(m_units.size());
    m_units.append(text);
    return {start, static_cast<std::int32_t>(text.size())};
}

TextPool::Place TextPool::add(const internal::EscapedText& text)
{
    const std::size_t start = m_units.size();
    m_units.resize(start + text.length());
    text.write(m_units.data() + start);
    return {static_cast<std::int32_t>(start), static_cast<std::int32_t>(text.length())};
}

} // namespace orv::net
