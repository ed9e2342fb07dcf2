#include "orv/io/Writer.h"

#include "orv/String.h"
#include "orv/internal/ReadBracket.h"

namespace orv::io {

Writer::~Writer() noexcept(false) = default;

void Writer::write(const String& text)
{
    const ::orv::internal::ReadBracket reading(text);
    write(reading.units(), reading.length());
}

void Writer::write(const char16_t* text)
{
    write(text, ORVStrLenW(text));
}

void Writer::write(char16_t unit)
{
    write(&unit, 1);
}

void Writer::flush() {}

void Writer::close() {}

} // namespace orv::io
