#pragma once

#include "orv/Reference.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"

#include <cstdio>

namespace orv::io {

/// Reads the standard input of the process through the C library's stream `stdin`, whose buffer it
/// shares with the host's own reading.
///
/// Errors: IoException "stream read error" and "stream seek error".
class ORV_API StdioInputStream : public InputStream {
public:
    ~StdioInputStream() noexcept(false) override;

    using InputStream::read;

    /// Reads a line, or the next n - 1 bytes of a longer one, with its line feed, and puts a zero
    /// byte behind it. Returns the length up to the first zero byte, -1 where that is 0: a line
    /// that begins with a zero byte, and an `n` of 1, read as the end of the stream. For plain
    /// bytes use read().
    std::int32_t read(signed char* buffer, std::int32_t n) override;

    std::int32_t read() override;

    /// Moves the position by `n`, also backward and past the end; returns by how much. Where the
    /// input has no position, as a pipe, it throws "stream seek error".
    std::int32_t skip(std::int32_t n) override;
};

/// Writes to the standard output of the process.
///
/// Single bytes go through the buffer of the C library's stream `stdout`, blocks past it: flush
/// between the two, or the block comes out first. Errors: IoException "stream write error" and
/// "stream flush error".
class ORV_API StdioOutputStream : public OutputStream {
public:
    ~StdioOutputStream() noexcept(false) override;

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;
    void flush() override;

    /// A new stream on standard error, which is never closed.
    static Reference<OutputStream> getStdErrorStream();
};

/// Writes to a stream of the C library, as StdioOutputStream does.
class ORV_API StdioFileOutputStream : public OutputStream {
public:
    /// `ownsStream` is whether close() and the destructor close `stream`; after that every write
    /// fails.
    StdioFileOutputStream(std::FILE* stream, bool ownsStream)
        : m_stream(stream), m_ownsStream(ownsStream)
    {
    }
    StdioFileOutputStream(const StdioFileOutputStream&) = delete;
    StdioFileOutputStream& operator=(const StdioFileOutputStream&) = delete;
    ~StdioFileOutputStream() noexcept(false) override;

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;
    void flush() override;
    void close() override;

private:
    void closeOwned() noexcept;

    std::FILE* m_stream; ///< null once it is closed
    bool m_ownsStream;
};

} // namespace orv::io
