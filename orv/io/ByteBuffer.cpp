#include "orv/io/ByteBuffer.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"
#include "orv/io/InputStream.h"
#include "orv/io/OutputStream.h"
#include "platform/orvcore.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace orv::io {

namespace {

/// What stands in front of an array that buffers own.
struct alignas(std::max_align_t) Owners {
    std::atomic<std::uint32_t> count{1};
};

signed char* allocateArray(std::uint32_t capacity)
{
    void* const block = orvcore::allocate(sizeof(Owners) + capacity);
    auto* const owners = ::new (block) Owners;
    return reinterpret_cast<signed char*>(owners + 1);
}

Owners& ownersOf(signed char* array)
{
    return *(reinterpret_cast<Owners*>(array) - 1);
}

void requireSupported(ENUM_ORV_ENDIAN order)
{
    if (order == ORV_ENDIAN_MIXED) throw UnsupportedOperationException();
}

template <std::size_t size>
using Bits = std::conditional_t<size == 2, std::uint16_t,
                                std::conditional_t<size == 4, std::uint32_t, std::uint64_t>>;

std::uint16_t reversed(std::uint16_t bits)
{
    return __builtin_bswap16(bits);
}

std::uint32_t reversed(std::uint32_t bits)
{
    return __builtin_bswap32(bits);
}

std::uint64_t reversed(std::uint64_t bits)
{
    return __builtin_bswap64(bits);
}

} // namespace

ByteBuffer::ByteBuffer(std::uint32_t capacity, ENUM_ORV_ENDIAN order, bool readOnly)
    : m_order(order), m_capacity(capacity), m_limit(capacity), m_data(allocateArray(capacity)),
      m_owned(true), m_readOnly(readOnly)
{
}

ByteBuffer::ByteBuffer(signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order,
                       bool readOnly)
    : m_order(order), m_capacity(capacity), m_limit(capacity), m_data(data), m_owned(false),
      m_readOnly(readOnly)
{
}

ByteBuffer::ByteBuffer(const signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order)
    : ByteBuffer(const_cast<signed char*>(data), capacity, order, true)
{
}

ByteBuffer::ByteBuffer(const ByteBuffer& other)
    : Object(), m_order(other.m_order), m_position(other.m_position), m_capacity(other.m_capacity),
      m_limit(other.m_limit), m_data(other.m_data), m_owned(other.m_owned),
      m_readOnly(other.m_readOnly)
{
    share();
}

ByteBuffer& ByteBuffer::operator=(const ByteBuffer& other)
{
    if (this == &other) return *this;
    other.share();
    if (m_owned) --ownersOf(m_data).count;
    m_order = other.m_order;
    m_position = other.m_position;
    m_capacity = other.m_capacity;
    m_limit = other.m_limit;
    m_data = other.m_data;
    m_owned = other.m_owned;
    m_readOnly = other.m_readOnly;
    return *this;
}

ByteBuffer::~ByteBuffer() noexcept(false)
{
    release();
}

/// Counts one owner more of the array.
void ByteBuffer::share() const noexcept
{
    if (m_owned) ++ownersOf(m_data).count;
}

/// Gives up the array, and frees it where nobody else owns it.
void ByteBuffer::release() noexcept
{
    if (m_owned && --ownersOf(m_data).count == 0) orvcore::deallocate(&ownersOf(m_data));
    m_owned = false;
}

bool ByteBuffer::equals(const Object& other) const
{
    const auto* const buffer = dynamic_cast<const ByteBuffer*>(&other);
    return buffer != nullptr && buffer->m_capacity == m_capacity &&
           ByteBuffer::compareTo(*buffer) == 0;
}

std::int32_t ByteBuffer::compareTo(const Object& other) const
{
    const auto* const buffer = dynamic_cast<const ByteBuffer*>(&other);
    if (buffer == nullptr) throwCastFailed();
    if (m_capacity != buffer->m_capacity) return m_capacity > buffer->m_capacity ? 1 : -1;
    if (m_capacity == 0 || m_data == buffer->m_data) return 0;
    const int order = std::memcmp(m_data, buffer->m_data, m_capacity);
    return (order > 0) - (order < 0);
}

std::uint32_t ByteBuffer::hashCode() const
{
    constexpr std::uint32_t factor = 37;
    constexpr std::uint32_t sampled = 32;
    const std::uint32_t step = m_capacity < sampled ? 1 : (m_capacity - sampled) / sampled + 1;
    std::uint32_t hash = 0;
    for (std::uint64_t i = 0; i < m_capacity; i += step) {
        hash = hash * factor + static_cast<std::uint32_t>(std::int32_t{m_data[i]});
    }
    return hash;
}

void ByteBuffer::setOrder(ENUM_ORV_ENDIAN order)
{
    requireSupported(order);
    m_order = order;
}

void ByteBuffer::setPosition(std::uint32_t position)
{
    if (position > m_limit) throwRange();
    m_position = position;
}

void ByteBuffer::setLimit(std::uint32_t limit)
{
    if (limit > m_capacity) throwRange();
    m_limit = limit;
}

void ByteBuffer::clear() noexcept
{
    m_position = 0;
    m_limit = m_capacity;
}

void ByteBuffer::flip() noexcept
{
    m_limit = m_position;
    m_position = 0;
}

void ByteBuffer::setBuffer(signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order,
                           bool readOnly)
{
    release();
    m_data = data;
    m_capacity = capacity;
    m_limit = capacity;
    m_position = 0;
    m_readOnly = readOnly;
    setOrder(order);
}

void ByteBuffer::setBuffer(const signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order)
{
    setBuffer(const_cast<signed char*>(data), capacity, order, true);
}

/// How many bytes lie from `index` up to the limit.
std::uint32_t ByteBuffer::below(std::uint32_t index) const noexcept
{
    return index < m_limit ? m_limit - index : 0;
}

/// How many bytes from the position up to the limit go through a stream at once.
std::int32_t ByteBuffer::atOnce() const noexcept
{
    constexpr std::uint32_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(below(m_position), most));
}

/// The byte at the position; the start of the array where that is not below the limit.
signed char* ByteBuffer::here() const noexcept
{
    return below(m_position) > 0 ? m_data + m_position : m_data;
}

std::uint32_t ByteBuffer::writeTo(OutputStream* out)
{
    const std::uint32_t start = m_position;
    while (below(m_position) > 0) {
        const std::int32_t n = atOnce();
        out->write(here(), n);
        m_position += static_cast<std::uint32_t>(n);
    }
    return m_position - start;
}

std::uint32_t ByteBuffer::readFrom(InputStream* in)
{
    if (below(m_position) == 0) return 0;
    const std::int32_t got = in->read(here(), atOnce());
    if (got < 0) return 0;
    m_position += static_cast<std::uint32_t>(got);
    return static_cast<std::uint32_t>(got);
}

std::uint32_t ByteBuffer::readFully(InputStream* in)
{
    const std::uint32_t start = m_position;
    while (readFrom(in) > 0) {
    }
    return m_position - start;
}

Reference<ByteBuffer> ByteBuffer::duplicate(bool readOnly, std::uint32_t capacity) const
{
    if (capacity != 0 && capacity < m_capacity) throwRange();
    auto copy = makeReference<ByteBuffer>(capacity != 0 ? capacity : m_capacity, m_order, readOnly);
    std::copy_n(m_data, m_capacity, copy->m_data);
    copy->m_limit = m_capacity;
    return copy;
}

Reference<ByteBuffer> ByteBuffer::slice() const
{
    return makeReference<ByteBuffer>(here(), below(m_position), m_order, m_readOnly);
}

// Values

void ByteBuffer::requireWritable() const
{
    if (m_readOnly) throwReadOnly();
}

template <class Value>
Value ByteBuffer::load(std::uint32_t index) const noexcept
{
    Bits<sizeof(Value)> bits;
    std::memcpy(&bits, m_data + index, sizeof bits);
    return std::bit_cast<Value>(m_order == ORV_ENDIAN_LITTLE ? bits : reversed(bits));
}

template <class Value>
Value ByteBuffer::loadHere() noexcept
{
    const std::uint32_t index = m_position;
    m_position += sizeof(Value);
    return load<Value>(index);
}

template <class Value>
void ByteBuffer::store(std::uint32_t index, Value value)
{
    requireWritable();
    auto bits = std::bit_cast<Bits<sizeof(Value)>>(value);
    if (m_order != ORV_ENDIAN_LITTLE) bits = reversed(bits);
    std::memcpy(m_data + index, &bits, sizeof bits);
}

template <class Value>
void ByteBuffer::storeHere(Value value)
{
    store(m_position, value);
    m_position += sizeof(Value);
}

std::uint32_t ByteBuffer::get(std::uint32_t index, signed char* bytes, std::uint32_t n) const
{
    const std::uint32_t copied = std::min(n, below(index));
    if (copied > 0) std::memmove(bytes, m_data + index, copied);
    return copied;
}

std::int16_t ByteBuffer::getInt16(std::uint32_t index) const
{
    return load<std::int16_t>(index);
}

std::int32_t ByteBuffer::getInt32(std::uint32_t index) const
{
    return load<std::int32_t>(index);
}

std::int64_t ByteBuffer::getInt64(std::uint32_t index) const
{
    return load<std::int64_t>(index);
}

float ByteBuffer::getFloat(std::uint32_t index) const
{
    return load<float>(index);
}

double ByteBuffer::getDouble(std::uint32_t index) const
{
    return load<double>(index);
}

std::uint32_t ByteBuffer::get(signed char* bytes, std::uint32_t n)
{
    const std::uint32_t copied = get(m_position, bytes, n);
    m_position += copied;
    return copied;
}

std::int16_t ByteBuffer::getInt16()
{
    return loadHere<std::int16_t>();
}

std::int32_t ByteBuffer::getInt32()
{
    return loadHere<std::int32_t>();
}

std::int64_t ByteBuffer::getInt64()
{
    return loadHere<std::int64_t>();
}

float ByteBuffer::getFloat()
{
    return loadHere<float>();
}

double ByteBuffer::getDouble()
{
    return loadHere<double>();
}

void ByteBuffer::put(std::uint32_t index, signed char byte)
{
    requireWritable();
    m_data[index] = byte;
}

std::uint32_t ByteBuffer::put(std::uint32_t index, const signed char* bytes, std::uint32_t n)
{
    requireWritable();
    const std::uint32_t copied = std::min(n, below(index));
    if (copied > 0) std::memmove(m_data + index, bytes, copied);
    return copied;
}

void ByteBuffer::putInt16(std::uint32_t index, std::int16_t value)
{
    store(index, value);
}

void ByteBuffer::putInt32(std::uint32_t index, std::int32_t value)
{
    store(index, value);
}

void ByteBuffer::putInt64(std::uint32_t index, std::int64_t value)
{
    store(index, value);
}

void ByteBuffer::putFloat(std::uint32_t index, float value)
{
    store(index, value);
}

void ByteBuffer::putDouble(std::uint32_t index, double value)
{
    store(index, value);
}

void ByteBuffer::put(signed char byte)
{
    const std::uint32_t index = m_position++;
    put(index, byte);
}

std::uint32_t ByteBuffer::put(const signed char* bytes, std::uint32_t n)
{
    const std::uint32_t copied = put(m_position, bytes, n);
    m_position += copied;
    return copied;
}

void ByteBuffer::putInt16(std::int16_t value)
{
    storeHere(value);
}

void ByteBuffer::putInt32(std::int32_t value)
{
    storeHere(value);
}

void ByteBuffer::putInt64(std::int64_t value)
{
    storeHere(value);
}

void ByteBuffer::putFloat(float value)
{
    storeHere(value);
}

void ByteBuffer::putDouble(double value)
{
    storeHere(value);
}

} // namespace orv::io
