#include "orv/io/IoExceptions.h"

namespace orv::io {

IoException::~IoException() noexcept(false) = default;
TimeoutException::~TimeoutException() noexcept(false) = default;
UnexpectedEOFException::~UnexpectedEOFException() noexcept(false) = default;

} // namespace orv::io
