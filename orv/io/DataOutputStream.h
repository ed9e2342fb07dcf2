#pragma once

#include "orv/io/FilterOutputStream.h"
#include "orv/util/CharBuffers.h"

#include <cstdint>

namespace orv::io {

/// Writes numbers in a fixed layout, whatever the machine: the high byte first, nothing between
/// them and nothing that tells their kind. DataInputStream reads them in the same order of calls.
///
/// | Operation | Bytes |
/// |---|---|
/// | writeBool() | 1: 1 or 0 |
/// | writeByte() | 1 |
/// | writeInt16(), writeChar16() | 2 |
/// | writeInt32(), writeChar32() | 4 |
/// | writeInt64() | 8: the high half, then the low half |
/// | writeFloat() | 4: the IEEE 754 bits |
/// | writeDouble() | 8: the IEEE 754 bits |
/// | writeString() | none |
///
/// Each byte goes to the inner stream by its write() of one byte, so give it one that collects
/// them. Errors: those of the inner stream, which may then have part of a value.
class ORV_API DataOutputStream : public FilterOutputStream {
public:
    explicit DataOutputStream(OutputStream* out) : FilterOutputStream(out) {}
    ~DataOutputStream() noexcept(false) override;

    /// Writes one byte, 1 for true and 0 for false.
    virtual void writeBool(bool value);
    /// Writes the byte as it is.
    virtual void writeByte(signed char value);
    /// Writes the value, the high byte first: 2 bytes for 16 bits, 4 for 32.
    virtual void writeChar16(char16_t value);
    virtual void writeChar32(std::uint32_t value);
    virtual void writeInt16(std::int16_t value);
    virtual void writeInt32(std::int32_t value);
    /// DataInputStream::readInt64() gives back only values whose bit 31 is clear, or set together
    /// with all bits above it.
    virtual void writeInt64(std::int64_t value);
    virtual void writeFloat(float value);
    /// As writeInt64().
    virtual void writeDouble(double value);
    /// Writes nothing and doesn't look at the text. For text, write its length and each unit by
    /// writeChar16().
    virtual void writeString(const util::AbstractCharBuffer& text);

    /// The same under the names of other types.
    void writeUnsignedByte(unsigned char value) { writeByte(static_cast<signed char>(value)); }
    void writeChar(char16_t value) { writeChar16(value); }
    void writeShort(std::int16_t value) { writeInt16(value); }
    void writeUnsignedShort(std::uint16_t value) { writeInt16(static_cast<std::int16_t>(value)); }
    void writeUnsignedInt16(std::uint16_t value) { writeInt16(static_cast<std::int16_t>(value)); }
    void writeInt(std::int32_t value) { writeInt32(value); }
    void writeLong(std::int32_t value) { writeInt32(value); }
    void writeUnsignedInt(std::uint32_t value) { writeInt32(static_cast<std::int32_t>(value)); }
    void writeUnsignedLong(std::uint32_t value) { writeInt32(static_cast<std::int32_t>(value)); }
    void writeUnsignedInt32(std::uint32_t value) { writeInt32(static_cast<std::int32_t>(value)); }
    void writeUnsignedInt64(std::uint64_t value) { writeInt64(static_cast<std::int64_t>(value)); }
};

} // namespace orv::io
