#include "orv/log/XmlLogWriter.h"

#include "orv/String.h"
#include "orv/log/internal/FieldWalk.h"
#include "orv/log/internal/UnitBuffer.h"

#include <exception>

#include <cxxabi.h>

namespace orv::log {

namespace {

std::u16string_view upTo(std::u16string_view text, char16_t unit)
{
    return text.substr(0, text.find(unit));
}

void put(const ILogEntry& entry, internal::UnitBuffer& text)
{
    text.append(u"  <entry>\n");
    internal::forEachField(entry, [&](std::u16string_view name, std::u16string_view value) {
        const std::u16string_view tag = upTo(name, u'\0');
        text.append(u"    <");
        text.append(tag);
        text.append(u"> ");
        text.append(upTo(value, u'\0'));
        text.append(u" </");
        text.append(upTo(tag, u' '));
        text.append(u">\n");
    });
    text.append(u"  </entry>\n");
}

} // namespace

XmlLogWriter::XmlLogWriter(io::Writer* out) : AbstractLogWriter(out)
{
    writer().write(u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    writer().write(u"<log>\n");
}

XmlLogWriter::~XmlLogWriter() noexcept(false)
{
    try {
        writer().write(u"</log>\n");
        writer().flush();
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled, which nobody may stop
    } catch (...) {
        if (std::uncaught_exceptions() == 0) throw;
    }
}

Reference<ILogProcessor> XmlLogWriter::create(io::Writer* writer)
{
    return Reference<ILogProcessor>(new XmlLogWriter(writer));
}

String XmlLogWriter::format(const ILogEntry* entry)
{
    internal::UnitBuffer text;
    put(*entry, text);
    return text.toString();
}

void XmlLogWriter::process(const ILogEntry* entry)
{
    // What the base does, without a String in between.
    internal::UnitBuffer text;
    put(*entry, text);
    writer().write(text.units(), text.length());
    flush();
}

} // namespace orv::log
