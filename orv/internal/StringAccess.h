#pragma once

#include "orv/Failure.h"
#include "orv/String.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace orv {

namespace internal {

/// The length of a text and one unit more, which always fits.
inline std::int32_t withTerminator(std::int32_t length)
{
    constexpr std::int32_t longest = std::numeric_limits<std::int32_t>::max() - 31;
    if (length > longest) throwOutOfMemory();
    return length + 1;
}

/// A counted buffer with a terminator behind `length` units, which are still to be written, and
/// room for `capacity` units.
inline util::RWCharBuffer* newText(std::int32_t length, std::int32_t capacity)
{
    auto* const buffer =
        util::RWCharBuffer::createCompact(std::max(capacity, withTerminator(length)));
    buffer->InternalTakeFirst();
    buffer->plainUnits()[length] = u'\0';
    buffer->setPlainLength(length + 1);
    return buffer;
}

/// The same with the text in it.
inline util::RWCharBuffer* newText(const char16_t* text, std::int32_t length, std::int32_t capacity)
{
    util::RWCharBuffer* const buffer = newText(length, capacity);
    if (length > 0) {
        std::memcpy(buffer->plainUnits(), text,
                    static_cast<std::size_t>(length) * sizeof(char16_t));
    }
    return buffer;
}

} // namespace internal

/// A read bracket over a String: free for plain buffers, a lock on those that lock.
class String::Reading {
public:
    explicit Reading(const String& text)
    {
        if (text.m_plain != nullptr) {
            m_data = text.m_plain->plainData();
        } else {
            throwIfFailed(text.m_buffer->GetReadLock(&m_data));
            m_locked = text.m_buffer;
        }
        m_length = text.textLength();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() { release(); }

    /// Ends the bracket early, before the buffer is let go.
    void release()
    {
        if (m_locked == nullptr) return;
        m_locked->ReleaseReadLock();
        m_locked = nullptr;
    }

    const char16_t* data() const noexcept { return m_data; }
    std::int32_t length() const noexcept { return m_length; }

private:
    const char16_t* m_data = nullptr;
    const util::ICharBuffer* m_locked = nullptr;
    std::int32_t m_length = 0;
};

/// A write bracket over a String. Unless close() ends it, the text is left as it is.
class String::Writing {
public:
    Writing(String& text, std::int32_t capacity) : m_text(text), m_data(text.openWrite(capacity)) {}
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;
    ~Writing()
    {
        if (m_open && m_text.m_plain == nullptr) m_text.m_buffer->ReleaseWriteLock(-1);
    }

    char16_t* data() const noexcept { return m_data; }
    std::int32_t length() const { return m_text.textLength(); }

    char16_t* grow(std::int32_t capacity)
    {
        m_data = m_text.growWrite(capacity);
        return m_data;
    }

    void close(std::int32_t length)
    {
        m_text.closeWrite(length);
        m_open = false;
    }

private:
    String& m_text;
    char16_t* m_data;
    bool m_open = true;
};

} // namespace orv
