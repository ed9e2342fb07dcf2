#include "orv/util/MTByteBuffer.h"

#include "orv/util/internal/BasicMTBufferBody.h"

namespace orv::util {

template class BasicMTBuffer<RWByteBuffer>;
MTByteBuffer::~MTByteBuffer() noexcept(false) = default;

} // namespace orv::util
