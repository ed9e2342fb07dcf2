#include "orv/util/ByteBuffers.h"

#include "orv/util/internal/BasicBufferBody.h"

namespace orv::util {

template class BasicAbstractBuffer<IORVByteBuffer>;
template class BasicPlainBuffer<AbstractByteBuffer>;
template class BasicROBuffer<AbstractByteBuffer>;
template class BasicRWBuffer<AbstractByteBuffer>;

// Defined here so that the tables of slots stand in the library.

Result AbstractByteBuffer::QueryInterface(const GUID& iid, void** out)
{
    return BasicAbstractBuffer::QueryInterface(iid, out);
}

bool ROByteBuffer::isWritable() const
{
    return false;
}

bool RWByteBuffer::isWritable() const
{
    return true;
}

} // namespace orv::util
