#include "orv/io/NullOutputStream.h"

namespace orv::io {

NullOutputStream::~NullOutputStream() noexcept(false) = default;

void NullOutputStream::write(const signed char*, std::int32_t) {}

void NullOutputStream::write(signed char) {}

} // namespace orv::io
