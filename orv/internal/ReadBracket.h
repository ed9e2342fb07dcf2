#pragma once

#include "orv/Failure.h"
#include "orv/util/ICharBuffer.h"

#include <cstdint>
#include <utility>

namespace orv::internal {

/// Keeps a character buffer, such as a String, from being changed for a scope.
class ReadBracket {
public:
    /// Throws ResultException where the buffer refuses.
    explicit ReadBracket(const util::ICharBuffer& buffer) : m_buffer(&buffer)
    {
        throwIfFailed(buffer.GetReadLock(&m_units));
        m_length = buffer.GetLength();
    }
    ReadBracket(const ReadBracket&) = delete;
    ReadBracket& operator=(const ReadBracket&) = delete;
    ~ReadBracket()
    {
        if (m_buffer != nullptr) m_buffer->ReleaseReadLock();
    }

    const char16_t* units() const noexcept { return m_units; }
    /// In units; of a String, without the zero unit at its end.
    std::int32_t length() const noexcept { return m_length; }

    /// Ends the bracket early, and throws what the destructor would keep to itself.
    void release() { throwIfFailed(std::exchange(m_buffer, nullptr)->ReleaseReadLock()); }

private:
    const util::ICharBuffer* m_buffer;
    const char16_t* m_units = nullptr;
    std::int32_t m_length = 0;
};

} // namespace orv::internal
