#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv::io {

/// The root of the byte streams to write to.
///
/// A class overrides the abstract write() at least, and says `using OutputStream::write` to keep
/// the other forms in sight.
///
/// Threads: one at a time for each stream. Streams that wrap another one hold it by reference, so
/// what they are given lives on the heap.
class ORV_API OutputStream : public Object {
public:
    ~OutputStream() noexcept(false) override;

    /// Writes `n` bytes.
    virtual void write(const char* bytes, std::int32_t n);
    virtual void write(const unsigned char* bytes, std::int32_t n);
    virtual void write(const signed char* bytes, std::int32_t n) = 0;
    /// Writes one byte.
    virtual void write(signed char byte);

    /// Passes on what the stream holds back; by default nothing.
    virtual void flush();

    /// Ends the stream; by default nothing. Streams that hold bytes back drop them here: flush
    /// first.
    virtual void close();
};

} // namespace orv::io
