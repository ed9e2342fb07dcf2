#include "orv/util/MTCharBuffer.h"

#include "orv/util/internal/BasicMTBufferBody.h"

namespace orv::util {

template class BasicMTBuffer<RWCharBuffer>;
MTCharBuffer::~MTCharBuffer() noexcept(false) = default;

} // namespace orv::util
