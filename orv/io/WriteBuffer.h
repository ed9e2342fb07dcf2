#pragma once

#include "orv/Export.h"
#include "orv/Reference.h"
#include "orv/io/Block.h"

#include <cstdint>

namespace orv::io {

class OutputStream;
class Writer;

/// What BufferedOutputStream and BufferedWriter have in common: a block of units held back from
/// `Target`.
///
/// Every operation but close() throws IoException "stream closed" after close().
template <class Target, class Unit>
class ORV_API WriteBuffer {
public:
    /// A `size` below 16 counts as 16.
    WriteBuffer(Target* out, std::int32_t size);
    WriteBuffer(const WriteBuffer&) = delete;
    WriteBuffer& operator=(const WriteBuffer&) = delete;

    /// The operations of the streams of the same names.
    void write(Unit unit)
    {
        if (m_next == m_end) makeRoom();
        *m_next++ = unit;
    }
    void write(const Unit* units, std::int32_t n);
    void flush();
    void close();

private:
    void requireOpen() const;
    std::int32_t count() const noexcept
    {
        return static_cast<std::int32_t>(m_next - m_buffer.get());
    }
    // Kept out of line so that the common case stays as small as it is.
    [[gnu::noinline]] void makeRoom();
    void writeOut();

    Reference<Target> m_out;
    std::int32_t m_size;
    Block<Unit> m_buffer; ///< null once closed, with the two below
    Unit* m_next;         ///< a pointer, as processors pass on a 32-bit count less quickly
    Unit* m_end;
};

extern template class WriteBuffer<OutputStream, signed char>;
extern template class WriteBuffer<Writer, char16_t>;

} // namespace orv::io
