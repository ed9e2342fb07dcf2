#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"

#include <cstdint>

/// In which order the bytes of a number stand in memory.
enum ENUM_ORV_ENDIAN : std::int32_t {
    ORV_ENDIAN_LITTLE = 0, ///< as the machine stores them, the low byte first
    ORV_ENDIAN_BIG = 1,    ///< the high byte first
    ORV_ENDIAN_MIXED = 2,  ///< not supported
};

namespace orv::io {

class InputStream;
class OutputStream;
class IoStreamChannel;
class QuarkChannel;

namespace internal {
template <class Buffer>
class ByteBufferCore;
} // namespace internal

/// An array of bytes with a position, a limit and a byte order, to lay out numbers and read them
/// back, at an index or at the position.
///
///     auto packet = makeReference<ByteBuffer>(512u, ORV_ENDIAN_BIG, false);
///     packet->putInt32(0x01020304);        // 01 02 03 04
///     packet->putInt16(7);
///     packet->flip();                      // limit 6, position 0
///     packet->writeTo(connection);
///
/// The position is up to the limit and the limit up to the capacity as long as only the setters
/// move them; setLimit() may leave the position above it. The operations on single values check
/// neither: to read or write outside of the array is undefined. Those with a count stay below the
/// limit, and move nothing where the index is not below it.
///
/// Read only refuses the put operations alone; readFrom() and channels still fill the buffer, so
/// one over constant bytes must not be given to them. A literal 0 as an index is written `0u`.
///
/// Ownership: an array given by the caller must outlive the buffer and its copies. One of the
/// buffer's own belongs to all copies of it together, and goes with the last. Threads: one at a
/// time for each buffer, and for buffers that share an array.
class ORV_API ByteBuffer : public Object {
public:
    /// A buffer with an array of its own, not filled. Position 0 and limit `capacity`, as in all
    /// of these; the order is not checked. Throws OutOfMemoryException.
    ByteBuffer(std::uint32_t capacity, ENUM_ORV_ENDIAN order, bool readOnly);
    /// A buffer over the caller's array.
    ByteBuffer(signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order, bool readOnly);
    /// A read-only buffer over the caller's array.
    ByteBuffer(const signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order);
    /// A buffer that shares the array of `other`, with a position and limit of its own.
    ByteBuffer(const ByteBuffer& other);
    /// The same for this buffer. Its old array stays where it is: with the other copies where there
    /// are any, and else it is lost, so that views by slice() stay valid; setBuffer() frees it.
    ByteBuffer& operator=(const ByteBuffer& other);
    ~ByteBuffer() noexcept(false) override;

    /// Whether `other` is a ByteBuffer of the same capacity with the same bytes over all of it.
    /// Position and limit don't matter.
    bool equals(const Object& other) const override;
    /// By the capacity, then by the bytes over all of it, taken without sign: -1, 0 or 1. Throws
    /// CastFailedException for an object of another class.
    std::int32_t compareTo(const Object& other) const override;
    /// Of at most 63 bytes, taken at equal steps over the capacity.
    std::uint32_t hashCode() const override;

    /// The byte order of numbers.
    ENUM_ORV_ENDIAN getOrder() const noexcept { return m_order; }
    /// The index at which the operations without one read and write.
    std::uint32_t getPosition() const noexcept { return m_position; }
    /// The index of the first byte that is not to be read or written.
    std::uint32_t getLimit() const noexcept { return m_limit; }
    /// The bytes of the array.
    std::uint32_t getCapacity() const noexcept { return m_capacity; }
    /// Whether the put operations throw ReadOnlyException.
    bool isReadOnly() const noexcept { return m_readOnly; }
    /// Limit less position, which wraps where the position is above the limit.
    std::uint32_t remaining() const noexcept { return m_limit - m_position; }

    /// ORV_ENDIAN_MIXED throws UnsupportedOperationException.
    void setOrder(ENUM_ORV_ENDIAN order);
    /// A position above the limit throws RangeErrorException.
    void setPosition(std::uint32_t position);
    /// A limit above the capacity throws RangeErrorException. The position stays.
    void setLimit(std::uint32_t limit);
    /// Position 0, limit at the capacity. The bytes stay.
    void clear() noexcept;
    /// Limit at the position, position 0: from writing to reading.
    void flip() noexcept;
    /// Position 0.
    void rewind() noexcept { m_position = 0; }

    /// Lets the present array go and takes the caller's. ORV_ENDIAN_MIXED throws
    /// UnsupportedOperationException, with the new array taken and the old order kept.
    void setBuffer(signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order, bool readOnly);
    /// The same, read only.
    void setBuffer(const signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order);

    /// Writes the bytes from position to limit, moves the position there and returns their number.
    std::uint32_t writeTo(OutputStream* out);
    /// Reads once, up to the limit, and moves the position by what came. Returns its number, 0
    /// also at the end of the stream and where no room is left.
    std::uint32_t readFrom(InputStream* in);
    /// Reads until no room is left or a read gives nothing; returns how many bytes came in all.
    std::uint32_t readFully(InputStream* in);

    /// A buffer with an array of its own of `capacity` bytes, 0 for as many as here: all bytes of
    /// this one with its order, at position 0, the limit behind them. A capacity that is too small
    /// throws RangeErrorException.
    Reference<ByteBuffer> duplicate(bool readOnly, std::uint32_t capacity) const;
    /// A view of the bytes from position to limit as a buffer of its own, with the same order and
    /// read only where this one is. The array must outlive it.
    Reference<ByteBuffer> slice() const;

    // Reading at an index

    signed char get(std::uint32_t index) const { return m_data[index]; }
    /// Copies up to `n` bytes from below the limit; returns how many.
    std::uint32_t get(std::uint32_t index, signed char* bytes, std::uint32_t n) const;
    std::int16_t getInt16(std::uint32_t index) const;
    std::int32_t getInt32(std::uint32_t index) const;
    std::int64_t getInt64(std::uint32_t index) const;
    float getFloat(std::uint32_t index) const;
    double getDouble(std::uint32_t index) const;

    // Reading at the position, which moves behind what was read

    signed char get() { return m_data[m_position++]; }
    std::uint32_t get(signed char* bytes, std::uint32_t n);
    std::int16_t getInt16();
    std::int32_t getInt32();
    std::int64_t getInt64();
    float getFloat();
    double getDouble();

    // Writing at an index. All throw ReadOnlyException on a read-only buffer.

    void put(std::uint32_t index, signed char byte);
    /// Copies up to `n` bytes to below the limit; returns how many.
    std::uint32_t put(std::uint32_t index, const signed char* bytes, std::uint32_t n);
    void putInt16(std::uint32_t index, std::int16_t value);
    void putInt32(std::uint32_t index, std::int32_t value);
    void putInt64(std::uint32_t index, std::int64_t value);
    void putFloat(std::uint32_t index, float value);
    void putDouble(std::uint32_t index, double value);

    // Writing at the position, which moves behind what was written. A write that is refused leaves
    // the position, but for put() of one byte, which has moved it.

    void put(signed char byte);
    std::uint32_t put(const signed char* bytes, std::uint32_t n);
    void putInt16(std::int16_t value);
    void putInt32(std::int32_t value);
    void putInt64(std::int64_t value);
    void putFloat(float value);
    void putDouble(double value);

private:
    friend class IoStreamChannel;
    friend class QuarkChannel;
    friend class internal::ByteBufferCore<ByteBuffer>;

    std::int32_t atOnce() const noexcept;
    signed char* here() const noexcept;

    ENUM_ORV_ENDIAN m_order;
    std::uint32_t m_position = 0;
    std::uint32_t m_capacity;
    std::uint32_t m_limit;
    signed char* m_data;
    bool m_owned; ///< the array has a count of its owners in front of it
    bool m_readOnly;
};

} // namespace orv::io
