#pragma once

#include "orv/Reference.h"
#include "orv/io/Writer.h"

namespace orv::io {

/// A writer that passes every operation on to another one, as the base of classes that change some
/// of them. close() does not flush.
class ORV_API FilterWriter : public Writer {
public:
    explicit FilterWriter(Writer* out) : m_out(out) {}
    FilterWriter(const FilterWriter&) = delete;
    FilterWriter& operator=(const FilterWriter&) = delete;
    ~FilterWriter() noexcept(false) override;

    void write(const String& text) override;
    void write(const char16_t* text) override;
    void write(const char16_t* units, std::int32_t n) override;
    void write(char16_t unit) override;
    void flush() override;
    void close() override;

protected:
    /// The writer that does the work.
    Reference<Writer> m_out;
};

} // namespace orv::io
