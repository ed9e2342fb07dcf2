#include "orv/text/charset/ByteToCharConverter.h"

#include <algorithm>

namespace orv::text::charset {

ByteToCharConverter::~ByteToCharConverter() noexcept(false) = default;

void ByteToCharConverter::reset() {}

bool ByteToCharConverter::getSubstitutionMode() const
{
    return m_substitutionMode;
}

void ByteToCharConverter::setSubstitutionMode(bool mode)
{
    m_substitutionMode = mode;
}

std::int32_t ByteToCharConverter::getSubstitutionChars(char16_t* buffer, std::int32_t n) const
{
    if (buffer == nullptr) return m_substitutionLength;
    const std::int32_t count = std::clamp(n, 0, m_substitutionLength);
    std::copy_n(m_substitution.begin(), count, buffer);
    return count;
}

void ByteToCharConverter::setSubstitutionChars(const char16_t* buffer, std::int32_t n)
{
    m_substitutionLength = std::clamp(n, 0, static_cast<std::int32_t>(m_substitution.size()));
    std::copy_n(buffer, m_substitutionLength, m_substitution.begin());
}

} // namespace orv::text::charset
