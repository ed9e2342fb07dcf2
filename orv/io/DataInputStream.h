#pragma once

#include "orv/String.h"
#include "orv/io/FilterInputStream.h"

#include <cstdint>

namespace orv::io {

/// Reads the values that DataOutputStream wrote, in the order in which they were written.
///
/// Each byte comes by the inner stream's read() of one byte, which must give 0 to 255. That of
/// BufferedInputStream has a sign, so that a byte of 0x80 or above reads as the end of the stream:
/// only readFully() is safe on it.
///
/// Errors: UnexpectedEOFException without description where the stream ends within a value; what
/// was left has then been read. Failures of the inner stream pass.
class ORV_API DataInputStream : public FilterInputStream {
public:
    explicit DataInputStream(InputStream* in) : FilterInputStream(in) {}
    ~DataInputStream() noexcept(false) override;

    /// Reads exactly `n` bytes, in blocks as the inner stream gives them. An `n` below 1 reads
    /// nothing. An inner stream that keeps answering 0 is asked for ever.
    virtual void readFully(signed char* buffer, std::int32_t n);

    /// Any byte but 0 is true.
    virtual bool readBool();
    virtual signed char readByte();
    virtual char16_t readChar16();
    virtual std::uint32_t readChar32();
    virtual std::int16_t readInt16();
    virtual std::int32_t readInt32();
    /// The low half is read with its sign: where its bit 31 is set, the upper 32 bits of the
    /// result are ones, whatever was written. Numbers that can be such go as two readInt32().
    virtual std::int64_t readInt64();
    virtual float readFloat();
    /// The bits of readInt64(), with the same loss.
    virtual double readDouble();
    /// The empty text, without reading anything.
    virtual String readString();

    /// The same under the names of other types.
    unsigned char readUnsignedByte() { return static_cast<unsigned char>(readByte()); }
    char16_t readChar() { return readChar16(); }
    std::int16_t readShort() { return readInt16(); }
    std::uint16_t readUnsignedShort() { return static_cast<std::uint16_t>(readInt16()); }
    std::uint16_t readUnsignedInt16() { return static_cast<std::uint16_t>(readInt16()); }
    std::int32_t readInt() { return readInt32(); }
    std::int32_t readLong() { return readInt32(); }
    std::uint32_t readUnsignedInt() { return static_cast<std::uint32_t>(readInt32()); }
    std::uint32_t readUnsignedLong() { return static_cast<std::uint32_t>(readInt32()); }
    std::uint32_t readUnsignedInt32() { return static_cast<std::uint32_t>(readInt32()); }
    std::uint64_t readUnsignedInt64() { return static_cast<std::uint64_t>(readInt64()); }
};

} // namespace orv::io
