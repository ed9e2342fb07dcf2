#pragma once

#include "orv/log/AbstractLogWriter.h"

namespace orv::log {

/// Writes entries as an XML document:
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <log>
///       <entry>
///         <level> 3 </level>
///         <text> request handled </text>
///       </entry>
///     </log>
///
/// The header and the opening tag are written, and not flushed, when the writer is made, the
/// closing tag when it is released: the file is a whole document only then. A file that is appended
/// to gets a second header and a second root.
///
/// The fields come in the order of getFieldNames(), values as toString() prints them. Nothing is
/// escaped: a value with "<" or "&" makes a document that parsers refuse. The closing tag of a
/// field is its name up to the first blank, so what stands behind one goes in as attributes. A zero
/// unit ends a name or a value. The header says UTF-8 whatever the encoding of the Writer is.
class ORV_API XmlLogWriter final : public AbstractLogWriter {
public:
    /// Throws what the Writer throws at the header, and ResultException with E_POINTER for null.
    [[nodiscard]] static Reference<ILogProcessor> create(io::Writer* writer);
    /// Closes the document and flushes. What the Writer throws goes out, unless an exception is on
    /// its way already.
    ~XmlLogWriter() noexcept(false) override;

    void process(const ILogEntry* entry) override;

protected:
    String format(const ILogEntry* entry) override;

private:
    explicit XmlLogWriter(io::Writer* writer);
};

} // namespace orv::log
