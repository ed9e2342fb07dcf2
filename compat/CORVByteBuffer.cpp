#include "compat/CORVByteBuffer.h"

#include "orv/io/internal/ByteBufferCore.h"

using orv::io::InputStream;
using orv::io::OutputStream;

using Core = orv::io::internal::ByteBufferCore<CORVByteBuffer>;

CORVByteBuffer::CORVByteBuffer(std::uint32_t capacity, ByteOrder order, bool readOnly)
    : m_order(order), m_capacity(capacity), m_limit(capacity), m_data(Core::allocate(capacity)),
      m_owned(true), m_readOnly(readOnly)
{
}

CORVByteBuffer::CORVByteBuffer(signed char* data, std::uint32_t capacity, ByteOrder order,
                               bool readOnly)
    : m_order(order), m_capacity(capacity), m_limit(capacity), m_data(data), m_owned(false),
      m_readOnly(readOnly)
{
}

CORVByteBuffer::CORVByteBuffer(const signed char* data, std::uint32_t capacity, ByteOrder order)
    : CORVByteBuffer(const_cast<signed char*>(data), capacity, order, true)
{
}

CORVByteBuffer::CORVByteBuffer(const CORVByteBuffer& other)
    : Object(), m_order(other.m_order), m_position(other.m_position), m_capacity(other.m_capacity),
      m_limit(other.m_limit), m_data(other.m_data), m_owned(other.m_owned),
      m_readOnly(other.m_readOnly)
{
    Core::share(*this);
}

CORVByteBuffer& CORVByteBuffer::operator=(const CORVByteBuffer& other)
{
    Core::assign(*this, other);
    return *this;
}

CORVByteBuffer::~CORVByteBuffer() noexcept(false)
{
    Core::release(*this);
}

bool CORVByteBuffer::equals(const Object& other) const
{
    return Core::equals(*this, other);
}

std::int32_t CORVByteBuffer::compareTo(const Object& other) const
{
    return Core::compareTo(*this, other);
}

std::uint32_t CORVByteBuffer::hashCode() const
{
    return Core::hashCode(*this);
}

void CORVByteBuffer::setOrder(ByteOrder order)
{
    Core::setOrder(*this, order);
}

void CORVByteBuffer::setPosition(std::uint32_t position)
{
    Core::setPosition(*this, position);
}

void CORVByteBuffer::setLimit(std::uint32_t limit)
{
    Core::setLimit(*this, limit);
}

void CORVByteBuffer::clear() noexcept
{
    Core::clear(*this);
}

void CORVByteBuffer::flip() noexcept
{
    Core::flip(*this);
}

void CORVByteBuffer::setBuffer(signed char* data, std::uint32_t capacity, ByteOrder order,
                               bool readOnly)
{
    Core::setBuffer(*this, data, capacity, order, readOnly);
}

void CORVByteBuffer::setBuffer(const signed char* data, std::uint32_t capacity, ByteOrder order)
{
    setBuffer(const_cast<signed char*>(data), capacity, order, true);
}

std::uint32_t CORVByteBuffer::writeTo(OutputStream* out)
{
    return Core::writeTo(*this, out);
}

std::uint32_t CORVByteBuffer::readFrom(InputStream* in)
{
    return Core::readFrom(*this, in);
}

std::uint32_t CORVByteBuffer::readFully(InputStream* in)
{
    return Core::readFully(*this, in);
}

CORVSmartPtr<CORVByteBuffer> CORVByteBuffer::duplicate(bool readOnly, std::uint32_t capacity) const
{
    return Core::duplicate<CORVSmartPtr<CORVByteBuffer>>(*this, readOnly, capacity);
}

CORVSmartPtr<CORVByteBuffer> CORVByteBuffer::slice() const
{
    return Core::slice<CORVSmartPtr<CORVByteBuffer>>(*this);
}

// Reading at an index

std::uint32_t CORVByteBuffer::get(std::uint32_t index, signed char* bytes, std::uint32_t n) const
{
    return Core::get(*this, index, bytes, n);
}

std::int16_t CORVByteBuffer::getInt16(std::uint32_t index) const
{
    return Core::load<std::int16_t>(*this, index);
}

std::int32_t CORVByteBuffer::getInt32(std::uint32_t index) const
{
    return Core::load<std::int32_t>(*this, index);
}

std::int64_t CORVByteBuffer::getInt64(std::uint32_t index) const
{
    return Core::load<std::int64_t>(*this, index);
}

float CORVByteBuffer::getFloat(std::uint32_t index) const
{
    return Core::load<float>(*this, index);
}

double CORVByteBuffer::getDouble(std::uint32_t index) const
{
    return Core::load<double>(*this, index);
}

// Reading at the position

std::uint32_t CORVByteBuffer::get(signed char* bytes, std::uint32_t n)
{
    return Core::get(*this, bytes, n);
}

std::int16_t CORVByteBuffer::getInt16()
{
    return Core::load<std::int16_t>(*this);
}

std::int32_t CORVByteBuffer::getInt32()
{
    return Core::load<std::int32_t>(*this);
}

std::int64_t CORVByteBuffer::getInt64()
{
    return Core::load<std::int64_t>(*this);
}

float CORVByteBuffer::getFloat()
{
    return Core::load<float>(*this);
}

double CORVByteBuffer::getDouble()
{
    return Core::load<double>(*this);
}

// Writing at an index

void CORVByteBuffer::put(std::uint32_t index, signed char byte)
{
    Core::put(*this, index, byte);
}

std::uint32_t CORVByteBuffer::put(std::uint32_t index, const signed char* bytes, std::uint32_t n)
{
    return Core::put(*this, index, bytes, n);
}

void CORVByteBuffer::putInt16(std::uint32_t index, std::int16_t value)
{
    Core::store(*this, index, value);
}

void CORVByteBuffer::putInt32(std::uint32_t index, std::int32_t value)
{
    Core::store(*this, index, value);
}

void CORVByteBuffer::putInt64(std::uint32_t index, std::int64_t value)
{
    Core::store(*this, index, value);
}

void CORVByteBuffer::putFloat(std::uint32_t index, float value)
{
    Core::store(*this, index, value);
}

void CORVByteBuffer::putDouble(std::uint32_t index, double value)
{
    Core::store(*this, index, value);
}

// Writing at the position

void CORVByteBuffer::put(signed char byte)
{
    Core::put(*this, byte);
}

std::uint32_t CORVByteBuffer::put(const signed char* bytes, std::uint32_t n)
{
    return Core::put(*this, bytes, n);
}

void CORVByteBuffer::putInt16(std::int16_t value)
{
    Core::store(*this, value);
}

void CORVByteBuffer::putInt32(std::int32_t value)
{
    Core::store(*this, value);
}

void CORVByteBuffer::putInt64(std::int64_t value)
{
    Core::store(*this, value);
}

void CORVByteBuffer::putFloat(float value)
{
    Core::store(*this, value);
}

void CORVByteBuffer::putDouble(double value)
{
    Core::store(*this, value);
}
