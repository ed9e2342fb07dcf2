#include "orv/io/NullWriter.h"

namespace orv::io {

NullWriter::~NullWriter() noexcept(false) = default;

void NullWriter::write(const String&) {}

void NullWriter::write(const char16_t*) {}

void NullWriter::write(const char16_t*, std::int32_t) {}

void NullWriter::write(char16_t) {}

} // namespace orv::io
