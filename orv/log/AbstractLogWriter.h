#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/io/Writer.h"
#include "orv/log/ILogProcessor.h"
#include "orv/quark/Implements.h"

namespace orv::log {

/// The end of the road: turns each entry into text and writes it to a Writer, which its host has
/// opened and built.
///
/// What process() wrote has been flushed when it returns: with a file at the end it survives the
/// death of the process. The Writer passes on what it gets, so an OutputStreamWriter whose buffer
/// holds a whole entry hands it to the file in one piece; see io::FileOutputStream for files that
/// several processes write to.
///
/// Errors: what the Writer throws goes to the caller, and the entry is not tried again. An entry
/// whose fields cannot be printed, as one that is null, throws before anything is written.
/// Threads: one at a time, as behind a MultiProcessor.
class ORV_API AbstractLogWriter : public ::orv::quark::Implements<Object, ILogProcessor> {
public:
    ~AbstractLogWriter() noexcept(false) override;

    /// Writes what format() gives, in one write, and calls flush().
    void process(const ILogEntry* entry) override;

    /// Flushes the Writer; called after each entry.
    virtual void flush();

protected:
    /// Holds a reference on `writer`. Throws ResultException with E_POINTER for null.
    explicit AbstractLogWriter(io::Writer* writer);

    /// The text of `entry`, with the end of its last line.
    virtual String format(const ILogEntry* entry) = 0;

    /// The Writer given at construction, borrowed.
    io::Writer& writer() const noexcept { return *m_writer; }

private:
    Reference<io::Writer> m_writer;
};

} // namespace orv::log
