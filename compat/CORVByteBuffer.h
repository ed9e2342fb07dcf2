#pragma once

#include "compat/CORVSmartPtr.h"
#include "orv/Object.h"

#include <cstdint>

namespace orv::io {

class InputStream;
class OutputStream;

namespace internal {
template <class Buffer>
class ByteBufferCore;
} // namespace internal

} // namespace orv::io

/// An array of bytes with a position, a limit and a byte order, to lay out numbers and read them
/// back, at an index or at the position.
///
///     CORVSmartPtr<CORVByteBuffer> packet(
///         new CORVByteBuffer(512u, CORVByteBuffer::ORDER_BIG, false));
///     packet->putInt32(0x01020304);        // 01 02 03 04
///     packet->flip();                      // limit 4, position 0
///     packet->writeTo(connection);
///
/// It behaves as orv::io::ByteBuffer, operation by operation, and is a class of its own: the two
/// never equal each other. Operations on single values check neither limit nor capacity, so that to
/// read or write outside of the array is undefined; those with a count stay below the limit. Read
/// only refuses the put operations, while readFrom() still fills the buffer. A literal 0 as an
/// index is written `0u`.
///
/// Ownership: an array given by the caller must outlive the buffer, its copies and slices. One of
/// the buffer's own goes with the last of its copies. Threads: one at a time for buffers that share
/// an array.
class ORV_API CORVByteBuffer : public orv::Object {
public:
    /// In which order the bytes of a number stand.
    enum ByteOrder : std::int32_t {
        ORDER_LITTLE = 0, ///< as the machine stores them, the low byte first
        ORDER_BIG = 1,    ///< the high byte first
        ORDER_MIXED = 2,  ///< not supported
    };

    /// A buffer with an array of its own, not filled. Position 0 and limit `capacity`, as in all
    /// of these; the order is not checked. Throws OutOfMemoryException.
    CORVByteBuffer(std::uint32_t capacity, ByteOrder order, bool readOnly);
    /// A buffer over the caller's array.
    CORVByteBuffer(signed char* data, std::uint32_t capacity, ByteOrder order, bool readOnly);
    /// A read-only buffer over the caller's array.
    CORVByteBuffer(const signed char* data, std::uint32_t capacity, ByteOrder order);
    /// A buffer that shares the array of `other`, with a position and limit of its own.
    CORVByteBuffer(const CORVByteBuffer& other);
    /// The same for this buffer. Its old array is not freed, so that slices stay valid: without a
    /// copy that holds it, it is lost; setBuffer() frees it.
    CORVByteBuffer& operator=(const CORVByteBuffer& other);
    ~CORVByteBuffer() noexcept(false) override;

    /// Whether `other` is a CORVByteBuffer of the same capacity with the same bytes over all of it.
    bool equals(const orv::Object& other) const override;
    /// By the capacity, then by the bytes over all of it, taken without sign: -1, 0 or 1. Throws
    /// CastFailedException for an object of another class.
    std::int32_t compareTo(const orv::Object& other) const override;
    /// Of at most 63 bytes, taken at equal steps over the capacity.
    std::uint32_t hashCode() const override;

    /// The byte order of numbers.
    ByteOrder getOrder() const noexcept { return m_order; }
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

    /// ORDER_MIXED throws UnsupportedOperationException.
    void setOrder(ByteOrder order);
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

    /// Lets the present array go and takes the caller's. ORDER_MIXED throws
    /// UnsupportedOperationException, with the new array taken and the old order kept.
    void setBuffer(signed char* data, std::uint32_t capacity, ByteOrder order, bool readOnly);
    /// The same, read only.
    void setBuffer(const signed char* data, std::uint32_t capacity, ByteOrder order);

    /// Writes the bytes from position to limit, moves the position there and returns their number.
    std::uint32_t writeTo(orv::io::OutputStream* out);
    /// Reads once, up to the limit, and moves the position by what came. Returns its number, 0
    /// also at the end of the stream and where no room is left.
    std::uint32_t readFrom(orv::io::InputStream* in);
    /// Reads until no room is left or a read gives nothing; returns how many bytes came in all.
    std::uint32_t readFully(orv::io::InputStream* in);

    /// A buffer with an array of its own of `capacity` bytes, 0 for as many as here: all bytes of
    /// this one with its order, at position 0, the limit behind them. A capacity that is too small
    /// throws RangeErrorException.
    CORVSmartPtr<CORVByteBuffer> duplicate(bool readOnly, std::uint32_t capacity) const;
    /// A view of the bytes from position to limit as a buffer of its own, with the same order and
    /// read only where this one is. The array must outlive it.
    CORVSmartPtr<CORVByteBuffer> slice() const;

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
    friend class orv::io::internal::ByteBufferCore<CORVByteBuffer>;

    ByteOrder m_order;
    std::uint32_t m_position = 0;
    std::uint32_t m_capacity;
    std::uint32_t m_limit;
    signed char* m_data;
    bool m_owned; ///< the array has a count of its owners in front of it
    bool m_readOnly;
};
