#include "orv/io/DataInputStream.h"

#include "orv/io/IoExceptions.h"

#include <bit>

namespace orv::io {

namespace {

/// Throws where `answer`, or one of the answers joined in it, says that the stream has ended.
void requireBytes(std::int32_t answer)
{
    if (answer < 0) throw UnexpectedEOFException();
}

/// Two bytes as one number.
std::uint32_t joined(std::int32_t high, std::int32_t low)
{
    return static_cast<std::uint32_t>(high) << 8 | static_cast<std::uint32_t>(low);
}

} // namespace

DataInputStream::~DataInputStream() noexcept(false) = default;

void DataInputStream::readFully(signed char* buffer, std::int32_t n)
{
    while (n > 0) {
        const std::int32_t got = m_in->read(buffer, n);
        requireBytes(got);
        buffer += got;
        n -= got;
    }
}

bool DataInputStream::readBool()
{
    const std::int32_t byte = m_in->read();
    requireBytes(byte);
    return byte != 0;
}

signed char DataInputStream::readByte()
{
    const std::int32_t byte = m_in->read();
    requireBytes(byte);
    return static_cast<signed char>(byte);
}

char16_t DataInputStream::readChar16()
{
    return static_cast<char16_t>(readInt16());
}

std::uint32_t DataInputStream::readChar32()
{
    return static_cast<std::uint32_t>(readInt32());
}

std::int16_t DataInputStream::readInt16()
{
    const std::int32_t high = m_in->read();
    const std::int32_t low = m_in->read();
    requireBytes(high | low);
    return static_cast<std::int16_t>(joined(high, low));
}

std::int32_t DataInputStream::readInt32()
{
    const std::int32_t first = m_in->read();
    const std::int32_t second = m_in->read();
    const std::int32_t third = m_in->read();
    const std::int32_t fourth = m_in->read();
    requireBytes(first | second | third | fourth);
    return static_cast<std::int32_t>(joined(first, second) << 16 | joined(third, fourth));
}

std::int64_t DataInputStream::readInt64()
{
    const auto high = static_cast<std::uint64_t>(readInt32()) << 32;
    const std::int64_t low = readInt32();
    return static_cast<std::int64_t>(high | static_cast<std::uint64_t>(low));
}

float DataInputStream::readFloat()
{
    return std::bit_cast<float>(readInt32());
}

double DataInputStream::readDouble()
{
    return std::bit_cast<double>(readInt64());
}

String DataInputStream::readString()
{
    return String();
}

} // namespace orv::io
