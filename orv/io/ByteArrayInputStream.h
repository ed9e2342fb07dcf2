#pragma once

#include "orv/io/Block.h"
#include "orv/io/InputStream.h"

namespace orv::io {

/// Reads from bytes in memory, of which it keeps a copy.
class ORV_API ByteArrayInputStream : public InputStream {
public:
    /// Copies `n` bytes.
    ByteArrayInputStream(const signed char* data, std::int32_t n);
    ~ByteArrayInputStream() noexcept(false) override;

    using InputStream::read;
    /// At the end -1, also for an `n` of 0.
    std::int32_t read(signed char* buffer, std::int32_t n) override;
    std::int32_t read() override;

private:
    Block<signed char> m_buffer;
    std::int32_t m_length;
    std::int32_t m_pos = 0;
};

} // namespace orv::io
