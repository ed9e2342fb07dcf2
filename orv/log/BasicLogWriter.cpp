#include "orv/log/BasicLogWriter.h"

#include "orv/String.h"
#include "orv/log/internal/FieldWalk.h"
#include "orv/log/internal/UnitBuffer.h"

namespace orv::log {

namespace {

void put(const ILogEntry& entry, internal::UnitBuffer& text)
{
    internal::forEachField(entry, [&](std::u16string_view name, std::u16string_view value) {
        text.append(name);
        text.append(u"=");
        text.append(value);
        text.append(u"\n");
    });
    text.append(u"-------------------------\n");
}

} // namespace

BasicLogWriter::BasicLogWriter(io::Writer* writer) : AbstractLogWriter(writer) {}

BasicLogWriter::~BasicLogWriter() noexcept(false) = default;

Reference<ILogProcessor> BasicLogWriter::create(io::Writer* writer)
{
    return Reference<ILogProcessor>(new BasicLogWriter(writer));
}

String BasicLogWriter::format(const ILogEntry* entry)
{
    internal::UnitBuffer text;
    put(*entry, text);
    return text.toString();
}

void BasicLogWriter::process(const ILogEntry* entry)
{
    // What the base does, without a String in between.
    internal::UnitBuffer text;
    put(*entry, text);
    writer().write(text.units(), text.length());
    flush();
}

} // namespace orv::log
