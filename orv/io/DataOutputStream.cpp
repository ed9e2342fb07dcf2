#include "orv/io/DataOutputStream.h"

#include <bit>

namespace orv::io {

DataOutputStream::~DataOutputStream() noexcept(false) = default;

void DataOutputStream::writeBool(bool value)
{
    m_out->write(static_cast<signed char>(value ? 1 : 0));
}

void DataOutputStream::writeByte(signed char value)
{
    m_out->write(value);
}

void DataOutputStream::writeChar16(char16_t value)
{
    writeInt16(static_cast<std::int16_t>(value));
}

void DataOutputStream::writeChar32(std::uint32_t value)
{
    writeInt32(static_cast<std::int32_t>(value));
}

void DataOutputStream::writeInt16(std::int16_t value)
{
    m_out->write(static_cast<signed char>(value >> 8));
    m_out->write(static_cast<signed char>(value));
}

void DataOutputStream::writeInt32(std::int32_t value)
{
    m_out->write(static_cast<signed char>(value >> 24));
    m_out->write(static_cast<signed char>(value >> 16));
    m_out->write(static_cast<signed char>(value >> 8));
    m_out->write(static_cast<signed char>(value));
}

void DataOutputStream::writeInt64(std::int64_t value)
{
    writeInt32(static_cast<std::int32_t>(value >> 32));
    writeInt32(static_cast<std::int32_t>(value));
}

void DataOutputStream::writeFloat(float value)
{
    writeInt32(std::bit_cast<std::int32_t>(value));
}

void DataOutputStream::writeDouble(double value)
{
    writeInt64(std::bit_cast<std::int64_t>(value));
}

void DataOutputStream::writeString(const util::AbstractCharBuffer&) {}

} // namespace orv::io
