#pragma once

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/Object.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"
#include "platform/orvcore.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

/// \file
/// What the classes of byte buffers do, for the sources that instantiate it.

namespace orv::io::internal {

/// What stands in front of an array that buffers own.
struct alignas(std::max_align_t) ArrayOwners {
    std::atomic<std::uint32_t> count{1};
};

inline ArrayOwners& ownersOf(signed char* array)
{
    return *(reinterpret_cast<ArrayOwners*>(array) - 1);
}

inline std::uint16_t reversed(std::uint16_t bits)
{
    return __builtin_bswap16(bits);
}

inline std::uint32_t reversed(std::uint32_t bits)
{
    return __builtin_bswap32(bits);
}

inline std::uint64_t reversed(std::uint64_t bits)
{
    return __builtin_bswap64(bits);
}

/// The operations of byte buffers. `Buffer` befriends them and declares the fields that they name;
/// its byte orders are numbered as those of ByteBuffer.
template <class Buffer>
class ByteBufferCore {
    using Order = decltype(Buffer::m_order);

    static constexpr Order HOST_ORDER{};
    static constexpr Order UNSUPPORTED_ORDER = static_cast<Order>(2);

    template <std::size_t size>
    using Bits = std::conditional_t<size == 2, std::uint16_t,
                                    std::conditional_t<size == 4, std::uint32_t, std::uint64_t>>;

public:
    // The array and its owners

    static signed char* allocate(std::uint32_t capacity)
    {
        void* const block = orvcore::allocate(sizeof(ArrayOwners) + capacity);
        auto* const owners = ::new (block) ArrayOwners;
        return reinterpret_cast<signed char*>(owners + 1);
    }

    /// Counts one owner more of the array.
    static void share(const Buffer& buffer) noexcept
    {
        if (buffer.m_owned) ++ownersOf(buffer.m_data).count;
    }

    /// Gives up the array, and frees it where nobody else owns it.
    static void release(Buffer& buffer) noexcept
    {
        if (buffer.m_owned && --ownersOf(buffer.m_data).count == 0) {
            orvcore::deallocate(&ownersOf(buffer.m_data));
        }
        buffer.m_owned = false;
    }

    static void assign(Buffer& buffer, const Buffer& other) noexcept
    {
        if (&buffer == &other) return;
        share(other);
        if (buffer.m_owned) --ownersOf(buffer.m_data).count;
        buffer.m_order = other.m_order;
        buffer.m_position = other.m_position;
        buffer.m_capacity = other.m_capacity;
        buffer.m_limit = other.m_limit;
        buffer.m_data = other.m_data;
        buffer.m_owned = other.m_owned;
        buffer.m_readOnly = other.m_readOnly;
    }

    static void setBuffer(Buffer& buffer, signed char* data, std::uint32_t capacity, Order order,
                          bool readOnly)
    {
        release(buffer);
        buffer.m_data = data;
        buffer.m_capacity = capacity;
        buffer.m_limit = capacity;
        buffer.m_position = 0;
        buffer.m_readOnly = readOnly;
        setOrder(buffer, order);
    }

    template <class Pointer>
    static Pointer duplicate(const Buffer& buffer, bool readOnly, std::uint32_t capacity)
    {
        if (capacity == 0) capacity = buffer.m_capacity;
        if (capacity < buffer.m_capacity) throwRange();
        Pointer copy(new Buffer(capacity, buffer.m_order, readOnly));
        std::copy_n(buffer.m_data, buffer.m_capacity, copy->m_data);
        copy->m_limit = buffer.m_capacity;
        return copy;
    }

    template <class Pointer>
    static Pointer slice(const Buffer& buffer)
    {
        return Pointer(new Buffer(here(buffer), below(buffer, buffer.m_position), buffer.m_order,
                                  buffer.m_readOnly));
    }

    // Order and hash

    static bool equals(const Buffer& buffer, const Object& object)
    {
        const auto* const other = dynamic_cast<const Buffer*>(&object);
        return other != nullptr && other->m_capacity == buffer.m_capacity &&
               compare(buffer, *other) == 0;
    }

    static std::int32_t compareTo(const Buffer& buffer, const Object& object)
    {
        const auto* const other = dynamic_cast<const Buffer*>(&object);
        if (other == nullptr) throwCastFailed();
        return compare(buffer, *other);
    }

    static std::uint32_t hashCode(const Buffer& buffer)
    {
        constexpr std::uint32_t factor = 37;
        constexpr std::uint32_t sampled = 32;
        const std::uint32_t capacity = buffer.m_capacity;
        const std::uint32_t step = capacity < sampled ? 1 : (capacity - sampled) / sampled + 1;
        std::uint32_t hash = 0;
        for (std::uint64_t i = 0; i < capacity; i += step) {
            hash = hash * factor + static_cast<std::uint32_t>(std::int32_t{buffer.m_data[i]});
        }
        return hash;
    }

    // Order of bytes, position, limit

    static void setOrder(Buffer& buffer, Order order)
    {
        if (order == UNSUPPORTED_ORDER) throw UnsupportedOperationException();
        buffer.m_order = order;
    }

    static void setPosition(Buffer& buffer, std::uint32_t position)
    {
        if (position > buffer.m_limit) throwRange();
        buffer.m_position = position;
    }

    static void setLimit(Buffer& buffer, std::uint32_t limit)
    {
        if (limit > buffer.m_capacity) throwRange();
        buffer.m_limit = limit;
    }

    static void clear(Buffer& buffer) noexcept
    {
        buffer.m_position = 0;
        buffer.m_limit = buffer.m_capacity;
    }

    static void flip(Buffer& buffer) noexcept
    {
        buffer.m_limit = buffer.m_position;
        buffer.m_position = 0;
    }

    // Streams

    /// How many bytes from the position up to the limit go through a stream at once.
    static std::int32_t atOnce(const Buffer& buffer) noexcept
    {
        constexpr std::uint32_t most = std::numeric_limits<std::int32_t>::max();
        return static_cast<std::int32_t>(std::min(below(buffer, buffer.m_position), most));
    }

    /// The byte at the position; the start of the array where that is not below the limit.
    static signed char* here(const Buffer& buffer) noexcept
    {
        const bool inside = below(buffer, buffer.m_position) > 0;
        return inside ? buffer.m_data + buffer.m_position : buffer.m_data;
    }

    static std::uint32_t writeTo(Buffer& buffer, OutputStream* out)
    {
        const std::uint32_t start = buffer.m_position;
        while (below(buffer, buffer.m_position) > 0) {
            const std::int32_t n = atOnce(buffer);
            out->write(here(buffer), n);
            buffer.m_position += static_cast<std::uint32_t>(n);
        }
        return buffer.m_position - start;
    }

    static std::uint32_t readFrom(Buffer& buffer, InputStream* in)
    {
        if (below(buffer, buffer.m_position) == 0) return 0;
        const std::int32_t got = in->read(here(buffer), atOnce(buffer));
        if (got < 0) return 0;
        buffer.m_position += static_cast<std::uint32_t>(got);
        return static_cast<std::uint32_t>(got);
    }

    static std::uint32_t readFully(Buffer& buffer, InputStream* in)
    {
        const std::uint32_t start = buffer.m_position;
        while (readFrom(buffer, in) > 0) {
        }
        return buffer.m_position - start;
    }

    // Bytes

    static std::uint32_t get(const Buffer& buffer, std::uint32_t index, signed char* bytes,
                             std::uint32_t n)
    {
        const std::uint32_t copied = std::min(n, below(buffer, index));
        if (copied > 0) std::memmove(bytes, buffer.m_data + index, copied);
        return copied;
    }

    static std::uint32_t get(Buffer& buffer, signed char* bytes, std::uint32_t n)
    {
        const std::uint32_t copied = get(buffer, buffer.m_position, bytes, n);
        buffer.m_position += copied;
        return copied;
    }

    static void put(Buffer& buffer, std::uint32_t index, signed char byte)
    {
        requireWritable(buffer);
        buffer.m_data[index] = byte;
    }

    static void put(Buffer& buffer, signed char byte)
    {
        const std::uint32_t index = buffer.m_position++;
        put(buffer, index, byte);
    }

    static std::uint32_t put(Buffer& buffer, std::uint32_t index, const signed char* bytes,
                             std::uint32_t n)
    {
        requireWritable(buffer);
        const std::uint32_t copied = std::min(n, below(buffer, index));
        if (copied > 0) std::memmove(buffer.m_data + index, bytes, copied);
        return copied;
    }

    static std::uint32_t put(Buffer& buffer, const signed char* bytes, std::uint32_t n)
    {
        const std::uint32_t copied = put(buffer, buffer.m_position, bytes, n);
        buffer.m_position += copied;
        return copied;
    }

    // Numbers

    template <class Value>
    static Value load(const Buffer& buffer, std::uint32_t index) noexcept
    {
        Bits<sizeof(Value)> bits;
        std::memcpy(&bits, buffer.m_data + index, sizeof bits);
        return std::bit_cast<Value>(buffer.m_order == HOST_ORDER ? bits : reversed(bits));
    }

    template <class Value>
    static Value load(Buffer& buffer) noexcept
    {
        const std::uint32_t index = buffer.m_position;
        buffer.m_position += sizeof(Value);
        return load<Value>(buffer, index);
    }

    template <class Value>
    static void store(Buffer& buffer, std::uint32_t index, Value value)
    {
        requireWritable(buffer);
        auto bits = std::bit_cast<Bits<sizeof(Value)>>(value);
        if (buffer.m_order != HOST_ORDER) bits = reversed(bits);
        std::memcpy(buffer.m_data + index, &bits, sizeof bits);
    }

    template <class Value>
    static void store(Buffer& buffer, Value value)
    {
        store(buffer, buffer.m_position, value);
        buffer.m_position += sizeof(Value);
    }

private:
    /// How many bytes lie from `index` up to the limit.
    static std::uint32_t below(const Buffer& buffer, std::uint32_t index) noexcept
    {
        return index < buffer.m_limit ? buffer.m_limit - index : 0;
    }

    static void requireWritable(const Buffer& buffer)
    {
        if (buffer.m_readOnly) throwReadOnly();
    }

    static std::int32_t compare(const Buffer& a, const Buffer& b)
    {
        if (a.m_capacity != b.m_capacity) return a.m_capacity > b.m_capacity ? 1 : -1;
        if (a.m_capacity == 0 || a.m_data == b.m_data) return 0;
        const int order = std::memcmp(a.m_data, b.m_data, a.m_capacity);
        return (order > 0) - (order < 0);
    }
};

} // namespace orv::io::internal
