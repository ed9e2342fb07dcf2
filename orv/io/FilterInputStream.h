#pragma once

#include "orv/Reference.h"
#include "orv/io/InputStream.h"

namespace orv::io {

/// A stream that passes every operation on to another one, as the base of classes that change some
/// of them.
///
/// Each form of read() goes to the same form of the inner stream. A class that changes the bytes
/// must therefore override all four.
class ORV_API FilterInputStream : public InputStream {
public:
    explicit FilterInputStream(InputStream* in) : m_in(in) {}
    FilterInputStream(const FilterInputStream&) = delete;
    FilterInputStream& operator=(const FilterInputStream&) = delete;
    ~FilterInputStream() noexcept(false) override;

    std::int32_t read(char* buffer, std::int32_t n) override;
    std::int32_t read(unsigned char* buffer, std::int32_t n) override;
    std::int32_t read(signed char* buffer, std::int32_t n) override;
    std::int32_t read() override;
    std::int32_t skip(std::int32_t n) override;
    std::int32_t available() override;
    void close() override;
    bool markSupported() override;
    void mark(std::int32_t limit) override;
    void reset() override;

protected:
    /// The stream that does the work.
    Reference<InputStream> m_in;
};

} // namespace orv::io
