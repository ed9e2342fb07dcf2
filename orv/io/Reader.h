#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv::io {

/// The root of the character streams to read from. A character is one UTF-16 code unit.
///
/// A class overrides the abstract read() at least, and says `using Reader::read` to keep the other
/// form in sight.
///
/// Counts are 32-bit; -1 is the end of the stream. Threads: one at a time for each stream. Streams
/// that wrap another one hold it by reference, so what they are given lives on the heap.
class ORV_API Reader : public Object {
public:
    ~Reader() noexcept(false) override;

    /// Reads units into `buffer`, at least one and at most `n`, waiting for the first where it
    /// must. Returns how many, or -1 at the end of the stream.
    virtual std::int32_t read(char16_t* buffer, std::int32_t n) = 0;

    /// The next unit, 0 to 65535, or -1 at the end of the stream.
    virtual std::int32_t read();

    /// Reads and drops `n` units, or as many as come before the end of the stream; returns how
    /// many. An `n` below 1 drops nothing.
    virtual std::int32_t skip(std::int32_t n);

    /// How many units can be read without waiting, as far as the stream knows; by default 0.
    virtual std::int32_t available();

    /// Ends the stream; by default nothing.
    virtual void close();

    /// Whether mark() and reset() work; by default false.
    virtual bool markSupported();

    /// Remembers this place for reset(), while no more than `limit` units are read behind it. By
    /// default nothing.
    virtual void mark(std::int32_t limit);

    /// Returns to the place of mark(). By default throws IoException "mark/reset not supported".
    virtual void reset();
};

} // namespace orv::io
