#include "orv/util/CharBuffers.h"

#include "orv/util/internal/BasicBufferBody.h"

namespace orv::util {

template class BasicAbstractBuffer<IORVCharBuffer>;
template class BasicPlainBuffer<AbstractCharBuffer>;
template class BasicROBuffer<AbstractCharBuffer>;
template class BasicRWBuffer<AbstractCharBuffer>;

// Defined here so that the tables of slots stand in the library.

Result AbstractCharBuffer::QueryInterface(const GUID& iid, void** out)
{
    return BasicAbstractBuffer::QueryInterface(iid, out);
}

bool ROCharBuffer::isWritable() const
{
    return false;
}

bool RWCharBuffer::isWritable() const
{
    return true;
}

namespace {

/// Holds the read lock of a buffer.
class ReadBracket {
public:
    explicit ReadBracket(const ICharBuffer* buffer) : m_buffer(buffer)
    {
        throwIfFailed(buffer->GetReadLock(&m_data));
    }
    ReadBracket(const ReadBracket&) = delete;
    ReadBracket& operator=(const ReadBracket&) = delete;
    ~ReadBracket()
    {
        if (m_buffer != nullptr) m_buffer->ReleaseReadLock();
    }

    const char16_t* data() const noexcept { return m_data; }

    void release()
    {
        const ICharBuffer* const buffer = m_buffer;
        m_buffer = nullptr;
        throwIfFailed(buffer->ReleaseReadLock());
    }

private:
    const ICharBuffer* m_buffer;
    const char16_t* m_data = nullptr;
};

void copyLocked(const ICharBuffer* source, char16_t* units, std::int32_t length)
{
    ReadBracket reading(source);
    std::copy_n(reading.data(), length, units);
    reading.release();
}

} // namespace

} // namespace orv::util

orv::Result ORVCopyCharBuffer(orv::util::ICharBuffer* destination, orv::util::ICharBuffer* source)
{
    const std::int32_t length = source->GetLength();
    char16_t* units = nullptr;
    orv::throwIfFailed(destination->GetWriteLock(length, &units));
    try {
        orv::util::copyLocked(source, units, length);
    } catch (...) {
        destination->ReleaseWriteLock(-1);
        throw;
    }
    return orv::throwIfFailed(destination->ReleaseWriteLock(length));
}
