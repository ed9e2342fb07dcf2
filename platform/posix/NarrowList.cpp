#include "platform/posix/internal/NarrowList.h"

#include <new>

namespace orvcore {
namespace {

bool isBlank(char16_t unit) noexcept
{
    return unit == u' ' || unit == u'\t';
}

/// Takes the next word off `*text`, copies it without its quotes to `*out` and moves both on; false
/// when there is none left.
bool nextWord(const char16_t** text, char16_t** out) noexcept
{
    while (isBlank(**text)) ++*text;
    if (**text == 0) return false;
    bool quoted = false;
    for (; **text != 0 && (quoted || !isBlank(**text)); ++*text) {
        if (**text == u'"') {
            quoted = !quoted;
        } else {
            *(*out)++ = **text;
        }
    }
    *(*out)++ = 0;
    return true;
}

} // namespace

CommandWords::~CommandWords()
{
    deallocateRaw(m_text);
    deallocateRaw(m_words);
}

ORVResult CommandWords::split(const char16_t* commandLine) noexcept
{
    // A word takes two units at least, with the blank or the terminator behind it.
    const auto length = static_cast<std::size_t>(ORVStrLenW(commandLine));
    m_text = static_cast<char16_t*>(allocateRaw((length + 1) * sizeof(char16_t)));
    m_words = static_cast<const char16_t**>(allocateRaw((length / 2 + 2) * sizeof(char16_t*)));
    if (m_text == nullptr || m_words == nullptr) return E_OUTOFMEMORY;

    std::size_t count = 0;
    char16_t* out = m_text;
    for (char16_t* word = out; nextWord(&commandLine, &out); word = out) m_words[count++] = word;
    m_words[count] = nullptr;
    return S_OK;
}

NarrowList::~NarrowList()
{
    for (std::size_t i = 0; i < m_count; ++i) m_texts[i].~NarrowText();
    deallocateRaw(m_texts);
    deallocateRaw(m_list);
}

ORVResult NarrowList::assign(const char16_t* const* list) noexcept
{
    std::size_t count = 0;
    while (list[count] != nullptr) ++count;
    m_texts = static_cast<NarrowText*>(allocateRaw(count * sizeof(NarrowText)));
    m_list = static_cast<char**>(allocateRaw((count + 1) * sizeof(char*)));
    if (m_texts == nullptr || m_list == nullptr) return E_OUTOFMEMORY;

    while (m_count < count) {
        NarrowText& text = *new (m_texts + m_count) NarrowText;
        const ORVResult result = text.assign(list[m_count++]);
        if (result < 0) return result;
        m_list[m_count - 1] = const_cast<char*>(text.get());
    }
    m_list[count] = nullptr;
    return S_OK;
}

} // namespace orvcore
