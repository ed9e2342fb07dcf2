#pragma once

#include "orv/log/AbstractLogWriter.h"

namespace orv::log {

/// Writes entries as lines of name and value, with a line of 25 hyphens behind each entry:
///
///     level=3
///     text=request handled
///     -------------------------
///
/// The fields come in the order of getFieldNames(), which is `sequence`, `level`, `text`, `name`,
/// `thread`, `timestamp` for those of a Logger. Values are printed by toString(). Nothing is
/// escaped: a value with line feeds spans lines. Lines end in a line feed.
class ORV_API BasicLogWriter final : public AbstractLogWriter {
public:
    /// Throws ResultException with E_POINTER for null.
    [[nodiscard]] static Reference<ILogProcessor> create(io::Writer* writer);
    ~BasicLogWriter() noexcept(false) override;

    void process(const ILogEntry* entry) override;

protected:
    String format(const ILogEntry* entry) override;

private:
    explicit BasicLogWriter(io::Writer* writer);
};

} // namespace orv::log
