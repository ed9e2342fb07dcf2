#include "orv/log/AbstractLogWriter.h"

#include "orv/Failure.h"
#include "orv/String.h"

namespace orv::log {

AbstractLogWriter::AbstractLogWriter(io::Writer* writer) : m_writer(writer)
{
    if (writer == nullptr) throwResult(E_POINTER);
}

AbstractLogWriter::~AbstractLogWriter() noexcept(false) = default;

void AbstractLogWriter::process(const ILogEntry* entry)
{
    const String text = format(entry);
    m_writer->write(text.getData(), text.getLength());
    flush();
}

void AbstractLogWriter::flush()
{
    m_writer->flush();
}

} // namespace orv::log
