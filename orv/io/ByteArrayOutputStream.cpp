#include "orv/io/ByteArrayOutputStream.h"

#include "orv/Failure.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <utility>

namespace orv::io {

ByteArrayOutputStream::ByteArrayOutputStream(std::int32_t capacity)
{
    reallocBuffer(capacity);
}

ByteArrayOutputStream::~ByteArrayOutputStream() noexcept(false) = default;

void ByteArrayOutputStream::write(const signed char* bytes, std::int32_t n)
{
    if (n < 1) return;
    if (n > INT32_MAX - m_count) throwOutOfMemory();

    ensureCapacity(m_count + n);
    std::copy_n(bytes, n, m_buffer.get() + m_count);
    m_count += n;
}

void ByteArrayOutputStream::write(signed char byte)
{
    // A derived class may have its own write() of blocks, which then takes single bytes too.
    if (m_count == m_capacity || &typeid(*this) != &typeid(ByteArrayOutputStream)) {
        OutputStream::write(byte);
        return;
    }
    m_buffer[static_cast<std::size_t>(m_count++)] = byte;
}

void ByteArrayOutputStream::writeTo(OutputStream* out) const
{
    out->write(m_buffer.get(), m_count);
}

std::int32_t ByteArrayOutputStream::getBytes(signed char* bytes, std::int32_t n) const
{
    const std::int32_t copied = std::clamp(n, 0, m_count);
    std::copy_n(m_buffer.get(), copied, bytes);
    return copied;
}

String ByteArrayOutputStream::toString() const
{
    return toString(nullptr);
}

String ByteArrayOutputStream::toString(const char16_t* encoding) const
{
    return String(m_buffer.get(), m_count, encoding, 0);
}

void ByteArrayOutputStream::ensureCapacity(std::int32_t needed)
{
    if (needed <= m_capacity) return;

    // Five quarters of a length near the bound does not fit in 32 bits.
    const std::int64_t grown = std::int64_t{needed} * 5 / 4;
    reallocBuffer(static_cast<std::int32_t>(std::min<std::int64_t>(grown, INT32_MAX)));
}

void ByteArrayOutputStream::reallocBuffer(std::int32_t capacity)
{
    capacity = std::max(capacity, 0);
    Block<signed char> block = allocateBlock<signed char>(capacity);
    m_count = std::min(m_count, capacity);
    std::copy_n(m_buffer.get(), m_count, block.get());
    m_buffer = std::move(block);
    m_capacity = capacity;
}

} // namespace orv::io
