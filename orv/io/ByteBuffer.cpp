#include "orv/io/ByteBuffer.h"

#include "orv/io/internal/ByteBufferCore.h"

namespace orv::io {

using Core = internal::ByteBufferCore<ByteBuffer>;

ByteBuffer::ByteBuffer(std::uint32_t capacity, ENUM_ORV_ENDIAN order, bool readOnly)
    : m_order(order), m_capacity(capacity), m_limit(capacity), m_data(Core::allocate(capacity)),
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
    Core::share(*this);
}

ByteBuffer& ByteBuffer::operator=(const ByteBuffer& other)
{
    Core::assign(*this, other);
    return *this;
}

ByteBuffer::~ByteBuffer() noexcept(false)
{
    Core::release(*this);
}

bool ByteBuffer::equals(const Object& other) const
{
    return Core::equals(*this, other);
}

std::int32_t ByteBuffer::compareTo(const Object& other) const
{
    return Core::compareTo(*this, other);
}

std::uint32_t ByteBuffer::hashCode() const
{
    return Core::hashCode(*this);
}

void ByteBuffer::setOrder(ENUM_ORV_ENDIAN order)
{
    Core::setOrder(*this, order);
}

void ByteBuffer::setPosition(std::uint32_t position)
{
    Core::setPosition(*this, position);
}

void ByteBuffer::setLimit(std::uint32_t limit)
{
    Core::setLimit(*this, limit);
}

void ByteBuffer::clear() noexcept
{
    Core::clear(*this);
}

void ByteBuffer::flip() noexcept
{
    Core::flip(*this);
}

void ByteBuffer::setBuffer(signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order,
                           bool readOnly)
{
    Core::setBuffer(*this, data, capacity, order, readOnly);
}

void ByteBuffer::setBuffer(const signed char* data, std::uint32_t capacity, ENUM_ORV_ENDIAN order)
{
    setBuffer(const_cast<signed char*>(data), capacity, order, true);
}

std::uint32_t ByteBuffer::writeTo(OutputStream* out)
{
    return Core::writeTo(*this, out);
}

std::uint32_t ByteBuffer::readFrom(InputStream* in)
{
    return Core::readFrom(*this, in);
}

std::uint32_t ByteBuffer::readFully(InputStream* in)
{
    return Core::readFully(*this, in);
}

Reference<ByteBuffer> ByteBuffer::duplicate(bool readOnly, std::uint32_t capacity) const
{
    return Core::duplicate<Reference<ByteBuffer>>(*this, readOnly, capacity);
}

Reference<ByteBuffer> ByteBuffer::slice() const
{
    return Core::slice<Reference<ByteBuffer>>(*this);
}

// Reading at an index

std::uint32_t ByteBuffer::get(std::uint32_t index, signed char* bytes, std::uint32_t n) const
{
    return Core::get(*this, index, bytes, n);
}

std::int16_t ByteBuffer::getInt16(std::uint32_t index) const
{
    return Core::load<std::int16_t>(*this, index);
}

std::int32_t ByteBuffer::getInt32(std::uint32_t index) const
{
    return Core::load<std::int32_t>(*this, index);
}

std::int64_t ByteBuffer::getInt64(std::uint32_t index) const
{
    return Core::load<std::int64_t>(*this, index);
}

float ByteBuffer::getFloat(std::uint32_t index) const
{
    return Core::load<float>(*this, index);
}

double ByteBuffer::getDouble(std::uint32_t index) const
{
    return Core::load<double>(*this, index);
}

// Reading at the position

std::uint32_t ByteBuffer::get(signed char* bytes, std::uint32_t n)
{
    return Core::get(*this, bytes, n);
}

std::int16_t ByteBuffer::getInt16()
{
    return Core::load<std::int16_t>(*this);
}

std::int32_t ByteBuffer::getInt32()
{
    return Core::load<std::int32_t>(*this);
}

std::int64_t ByteBuffer::getInt64()
{
    return Core::load<std::int64_t>(*this);
}

float ByteBuffer::getFloat()
{
    return Core::load<float>(*this);
}

double ByteBuffer::getDouble()
{
    return Core::load<double>(*this);
}

// Writing at an index

void ByteBuffer::put(std::uint32_t index, signed char byte)
{
    Core::put(*this, index, byte);
}

std::uint32_t ByteBuffer::put(std::uint32_t index, const signed char* bytes, std::uint32_t n)
{
    return Core::put(*this, index, bytes, n);
}

void ByteBuffer::putInt16(std::uint32_t index, std::int16_t value)
{
    Core::store(*this, index, value);
}

void ByteBuffer::putInt32(std::uint32_t index, std::int32_t value)
{
    Core::store(*this, index, value);
}

void ByteBuffer::putInt64(std::uint32_t index, std::int64_t value)
{
    Core::store(*this, index, value);
}

void ByteBuffer::putFloat(std::uint32_t index, float value)
{
    Core::store(*this, index, value);
}

void ByteBuffer::putDouble(std::uint32_t index, double value)
{
    Core::store(*this, index, value);
}

// Writing at the position

void ByteBuffer::put(signed char byte)
{
    Core::put(*this, byte);
}

std::uint32_t ByteBuffer::put(const signed char* bytes, std::uint32_t n)
{
    return Core::put(*this, bytes, n);
}

void ByteBuffer::putInt16(std::int16_t value)
{
    Core::store(*this, value);
}

void ByteBuffer::putInt32(std::int32_t value)
{
    Core::store(*this, value);
}

void ByteBuffer::putInt64(std::int64_t value)
{
    Core::store(*this, value);
}

void ByteBuffer::putFloat(float value)
{
    Core::store(*this, value);
}

void ByteBuffer::putDouble(double value)
{
    Core::store(*this, value);
}

// For the channels

std::int32_t ByteBuffer::atOnce() const noexcept
{
    return Core::atOnce(*this);
}

signed char* ByteBuffer::here() const noexcept
{
    return Core::here(*this);
}

} // namespace orv::io
