#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv::io {

/// The root of the byte streams to read from.
///
/// A class overrides the abstract read() at least, and says `using InputStream::read` to keep the
/// other forms in sight.
///
/// Counts are 32-bit; -1 is the end of the stream. Threads: one at a time for each stream. Streams
/// that wrap another one hold it by reference, so what they are given lives on the heap.
class ORV_API InputStream : public Object {
public:
    ~InputStream() noexcept(false) override;

    /// Reads bytes into `buffer`, at least one and at most `n`, waiting for the first where it
    /// must. Returns how many, or -1 at the end of the stream.
    virtual std::int32_t read(char* buffer, std::int32_t n);
    virtual std::int32_t read(unsigned char* buffer, std::int32_t n);
    virtual std::int32_t read(signed char* buffer, std::int32_t n) = 0;

    /// The next byte, 0 to 255, or -1 at the end of the stream.
    virtual std::int32_t read();

    /// Reads and drops `n` bytes, or as many as come before the end of the stream; returns how
    /// many. An `n` below 1 drops nothing.
    virtual std::int32_t skip(std::int32_t n);

    /// How many bytes can be read without waiting, as far as the stream knows; by default 0.
    virtual std::int32_t available();

    /// Ends the stream; by default nothing.
    virtual void close();

    /// Whether mark() and reset() work; by default false.
    virtual bool markSupported();

    /// Remembers this place for reset(), while no more than `limit` bytes are read behind it. By
    /// default nothing.
    virtual void mark(std::int32_t limit);

    /// Returns to the place of mark(). By default throws IoException "mark/reset not supported".
    virtual void reset();
};

} // namespace orv::io
