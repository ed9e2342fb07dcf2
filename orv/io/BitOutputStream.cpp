#include "orv/io/BitOutputStream.h"

#include "orv/Exceptions.h"
#include "orv/Failure.h"

#include <algorithm>
#include <typeinfo>

namespace orv::io {

namespace {

constexpr std::int32_t BYTE = 8;
constexpr std::int32_t WIDEST = 32;

/// The greatest number of this width; 0 for the widest.
std::uint32_t greatest(std::int32_t bits)
{
    return bits == WIDEST ? 0 : (std::uint32_t{1} << bits) - 1;
}

} // namespace

BitOutputStream::~BitOutputStream() noexcept(false) = default;

void BitOutputStream::write(const char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void BitOutputStream::write(const unsigned char* bytes, std::int32_t n)
{
    write(reinterpret_cast<const signed char*>(bytes), n);
}

void BitOutputStream::write(const signed char* bytes, std::int32_t n)
{
    for (std::int32_t i = 0; i < n; ++i) write(bytes[i]);
}

void BitOutputStream::write(signed char byte)
{
    write(std::int32_t{byte}, BYTE);
}

void BitOutputStream::flush()
{
    if (m_count > 0) {
        m_out->write(static_cast<signed char>(m_bits << (BYTE - m_count)));
        m_bits = 0;
        m_count = 0;
    }
    m_out->flush();
}

void BitOutputStream::write(std::uint32_t value, std::int32_t bits)
{
    if (bits < 1 || bits > WIDEST) throwResult(E_INVALIDARG);
    if (value > greatest(bits)) throw RangeErrorException(u"Number out of range");

    // A derived class may have its own writeBit(), which then sees each bit.
    if (&typeid(*this) == &typeid(BitOutputStream)) {
        append(value, bits);
        return;
    }
    for (std::int32_t bit = bits - 1; bit >= 0; --bit) writeBit((value >> bit & 1) != 0);
}

void BitOutputStream::writeBit(bool bit)
{
    append(bit ? 1 : 0, 1);
}

/// Takes as many bits at once as go into the open byte.
void BitOutputStream::append(std::uint32_t value, std::int32_t bits)
{
    while (bits > 0) {
        const std::int32_t taken = std::min(bits, BYTE - m_count);
        bits -= taken;
        const std::uint32_t part = value >> bits & ((1U << taken) - 1);
        const auto joined = static_cast<std::uint8_t>(std::uint32_t{m_bits} << taken | part);
        if (m_count + taken < BYTE) {
            m_bits = joined;
            m_count += taken;
            return;
        }
        m_out->write(static_cast<signed char>(joined));
        m_bits = 0;
        m_count = 0;
    }
}

} // namespace orv::io
