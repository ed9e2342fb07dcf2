#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv::io {

/// The root of the character streams to write to. A character is one UTF-16 code unit.
///
/// A class overrides the abstract write() at least, and says `using Writer::write` to keep the
/// other forms in sight.
///
/// Threads: one at a time for each stream; what several threads share goes through a lock of
/// theirs. Streams that wrap another one hold it by reference, so what they are given lives on the
/// heap.
class ORV_API Writer : public Object {
public:
    ~Writer() noexcept(false) override;

    /// Writes a text. Throws ResultException where a wrapped buffer of it fails to lock.
    virtual void write(const String& text);
    /// Writes a terminated text.
    virtual void write(const char16_t* text);
    /// Writes `n` units.
    virtual void write(const char16_t* units, std::int32_t n) = 0;
    /// Writes one unit.
    virtual void write(char16_t unit);

    /// Passes on what the stream holds back; by default nothing.
    virtual void flush();

    /// Ends the stream; by default nothing. Streams that hold units back drop them here: flush
    /// first.
    virtual void close();
};

} // namespace orv::io
