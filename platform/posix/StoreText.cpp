#include "platform/posix/internal/StoreText.h"

#include "platform/posix/internal/Case.h"
#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <cstring>

namespace orvcore {

StoreText::~StoreText()
{
    if (m_bytes != m_short) deallocateRaw(m_bytes);
}

bool StoreText::reserve(std::size_t more) noexcept
{
    if (more <= m_capacity - m_size) return true;
    const std::size_t capacity = std::max(2 * m_capacity, m_size + more);
    void* const memory = reallocateRaw(m_bytes == m_short ? nullptr : m_bytes, capacity);
    if (memory == nullptr) {
        m_failed = true;
        return false;
    }
    if (m_bytes == m_short) std::memcpy(memory, m_short, m_size);
    m_bytes = static_cast<char*>(memory);
    m_capacity = capacity;
    return true;
}

void StoreText::append(const void* bytes, std::size_t count) noexcept
{
    if (count == 0 || !reserve(count)) return;
    std::memcpy(m_bytes + m_size, bytes, count);
    m_size += count;
}

void StoreText::appendUnit(char16_t unit) noexcept
{
    const auto put = [&](unsigned byte) { m_bytes[m_size++] = static_cast<char>(byte); };
    if (unit < 0x80) {
        put(unit);
        return;
    }
    if (unit < 0x800) {
        put(0xC0u | (unit >> 6));
    } else {
        put(0xE0u | (unit >> 12));
        put(0x80u | ((unit >> 6) & 0x3Fu));
    }
    put(0x80u | (unit & 0x3Fu));
}

void StoreText::appendUnits(std::u16string_view units) noexcept
{
    if (!reserve(3 * units.size())) return;
    for (const char16_t unit : units) appendUnit(unit);
}

void StoreText::appendFolded(std::u16string_view units) noexcept
{
    if (!reserve(3 * units.size())) return;
    for (const char16_t unit : units) appendUnit(lowerUnit(unit));
}

std::size_t widenStoreText(std::string_view text, char16_t* out) noexcept
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++count) {
        const auto byte = [&] { return static_cast<unsigned char>(text[i++]); };
        const unsigned first = byte();
        unsigned unit = first;
        if (first >= 0xC0 && i < text.size()) {
            unit = (first & (first < 0xE0 ? 0x1Fu : 0x0Fu)) << 6 | (byte() & 0x3Fu);
            if (first >= 0xE0 && i < text.size()) unit = unit << 6 | (byte() & 0x3Fu);
        }
        if (out != nullptr) out[count] = static_cast<char16_t>(unit);
    }
    return count;
}

bool nextPart(const char16_t** path, std::u16string_view* part) noexcept
{
    const char16_t* end = *path;
    while (*end == u'\\') ++end;
    const char16_t* const begin = end;
    while (*end != 0 && *end != u'\\') ++end;
    *path = end;
    *part = {begin, static_cast<std::size_t>(end - begin)};
    return end != begin;
}

ORVResult StoreKey::assign(ENUM_ORV_HKEY root, const char16_t* path) noexcept
{
    if (path == nullptr) return E_POINTER;
    if (root > ORV_HKEY_CONFIG_64) return E_INVALIDARG;
    const char digit = static_cast<char>('0' + root);
    m_text.append(&digit, rootSize);
    for (std::u16string_view part; nextPart(&path, &part);) {
        if (part.size() > longestStoreName) return nameTooLong;
        m_lastPart = m_text.view().size();
        m_text.append("\\");
        m_text.appendFolded(part);
    }
    return m_text.failed() ? E_OUTOFMEMORY : S_OK;
}

} // namespace orvcore
