#pragma once

#include "orv/Export.h"
#include "orv/Reference.h"
#include "orv/io/Block.h"

#include <cstdint>

namespace orv::io {

class InputStream;
class Reader;

/// What BufferedInputStream and BufferedReader have in common: a block of units read ahead from
/// `Source`, with a mark.
///
/// Every operation but close() throws IoException "stream closed" after close().
template <class Source, class Unit>
class ORV_API ReadBuffer {
public:
    /// A `size` below 16 counts as 16.
    ReadBuffer(Source* in, std::int32_t size);
    ReadBuffer(const ReadBuffer&) = delete;
    ReadBuffer& operator=(const ReadBuffer&) = delete;

    /// The next unit, with its sign if it has one, or -1 at the end.
    std::int32_t read()
    {
        if (m_next == m_end) return readRefilled();
        return *m_next++;
    }

    /// The operations of the streams of the same names.
    std::int32_t read(Unit* buffer, std::int32_t n);
    std::int32_t skip(std::int32_t n);
    std::int32_t available();
    void mark(std::int32_t limit);
    void reset();
    void close();

    /// Whether there is a unit at data(), which may have to be waited for.
    bool hasMore() { return m_next != m_end || refill(); }
    /// The units read ahead.
    const Unit* data() const noexcept { return m_next; }
    std::int32_t length() const noexcept { return static_cast<std::int32_t>(m_end - m_next); }
    /// Consumes `n` of the units read ahead.
    void consume(std::int32_t n) noexcept { m_next += n; }

    /// Throws unless the stream is open.
    void requireOpen() const
    {
        if (m_buffer == nullptr) throwClosed();
    }

private:
    // Kept out of line so that the common case stays as small as it is.
    [[gnu::noinline]] std::int32_t readRefilled();
    bool refill();
    std::int32_t keepMarked();
    void setAhead(std::int32_t pos, std::int32_t count) noexcept;
    std::int32_t position() const noexcept
    {
        return static_cast<std::int32_t>(m_next - m_buffer.get());
    }
    [[noreturn]] static void throwClosed();

    static constexpr std::int32_t noMark = -1;
    static constexpr std::int32_t lostMark = -2;

    Reference<Source> m_in;
    std::int32_t m_size;
    Block<Unit> m_buffer; ///< null once closed, with the two below
    const Unit* m_next;   ///< a pointer, as processors pass on a 32-bit position less quickly
    const Unit* m_end;
    std::int32_t m_markLimit = 0;
    std::int32_t m_markPos = noMark;
};

extern template class ReadBuffer<InputStream, signed char>;
extern template class ReadBuffer<Reader, char16_t>;

} // namespace orv::io
