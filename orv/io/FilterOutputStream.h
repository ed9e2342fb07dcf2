#pragma once

#include "orv/Reference.h"
#include "orv/io/OutputStream.h"

namespace orv::io {

/// A stream that passes every operation on to another one, as the base of classes that change some
/// of them.
///
/// Each form of write() goes to the same form of the inner stream. A class that changes the bytes
/// must therefore override all four. close() does not flush.
class ORV_API FilterOutputStream : public OutputStream {
public:
    explicit FilterOutputStream(OutputStream* out) : m_out(out) {}
    FilterOutputStream(const FilterOutputStream&) = delete;
    FilterOutputStream& operator=(const FilterOutputStream&) = delete;
    ~FilterOutputStream() noexcept(false) override;

    void write(const char* bytes, std::int32_t n) override;
    void write(const unsigned char* bytes, std::int32_t n) override;
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;
    void flush() override;
    void close() override;

protected:
    /// The stream that does the work.
    Reference<OutputStream> m_out;
};

} // namespace orv::io
