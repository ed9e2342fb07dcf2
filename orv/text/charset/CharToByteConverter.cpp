#include "orv/text/charset/CharToByteConverter.h"

#include <algorithm>

namespace orv::text::charset {

CharToByteConverter::~CharToByteConverter() noexcept(false) = default;

void CharToByteConverter::reset() {}

bool CharToByteConverter::getSubstitutionMode() const
{
    return m_substitutionMode;
}

void CharToByteConverter::setSubstitutionMode(bool mode)
{
    m_substitutionMode = mode;
}

std::int32_t CharToByteConverter::getSubstitutionBytes(signed char* buffer, std::int32_t n) const
{
    if (buffer == nullptr) return m_substitutionLength;
    const std::int32_t count = std::clamp(n, 0, m_substitutionLength);
    std::copy_n(m_substitution.begin(), count, buffer);
    return count;
}

void CharToByteConverter::setSubstitutionBytes(const signed char* buffer, std::int32_t n)
{
    m_substitutionLength = std::clamp(n, 0, static_cast<std::int32_t>(m_substitution.size()));
    std::copy_n(buffer, m_substitutionLength, m_substitution.begin());
}

} // namespace orv::text::charset
