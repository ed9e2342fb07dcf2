#pragma once

#include "orv/String.h"
#include "orv/io/Writer.h"

namespace orv::io {

/// Collects written text in a String, lone surrogates and zero units too.
///
/// flush() and close() do nothing: a closed writer can still be read and written.
class ORV_API StringWriter : public Writer {
public:
    /// Has room for `capacity` units before its first growth.
    explicit StringWriter(std::int32_t capacity) : m_text(capacity) {}
    /// Begins with the text of `other`.
    StringWriter(const StringWriter& other) : Writer(other), m_text(other.m_text) {}
    StringWriter& operator=(const StringWriter& other) = delete;
    ~StringWriter() noexcept(false) override;

    using Writer::write;
    void write(const char16_t* units, std::int32_t n) override;

    /// A copy of the text so far.
    String toString() const override;

private:
    String m_text;
};

} // namespace orv::io
