#include "orv/util/CharBuffers.h"

#include "orv/internal/ReadBracket.h"
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

/// Copies what of `length` units is still there; returns how many.
std::int32_t copyLocked(const ICharBuffer& source, char16_t* units, std::int32_t length)
{
    ::orv::internal::ReadBracket reading(source);
    // Another thread may have shortened the text since it was measured.
    length = std::min(length, reading.length());
    std::copy_n(reading.units(), length, units);
    reading.release();
    return length;
}

} // namespace

} // namespace orv::util

orv::Result ORVCopyCharBuffer(orv::util::ICharBuffer* destination, orv::util::ICharBuffer* source)
{
    std::int32_t length = source->GetLength();
    char16_t* units = nullptr;
    orv::throwIfFailed(destination->GetWriteLock(length, &units));
    try {
        length = orv::util::copyLocked(*source, units, length);
    } catch (...) {
        destination->ReleaseWriteLock(-1);
        throw;
    }
    return orv::throwIfFailed(destination->ReleaseWriteLock(length));
}
