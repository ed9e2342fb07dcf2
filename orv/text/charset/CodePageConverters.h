#pragma once

#include "orv/text/charset/SingleByteConverters.h"

namespace orv::text::charset {

/// A decoder by a table of 256 units, indexed by the unsigned byte; U+FFFD stands for no character.
///
/// Name and table belong to the caller and outlive the decoder. convert() reads the table itself; a
/// derived class with a convertByte() of its own overrides convert() too.
class ORV_API BTCSingleByteTable : public BTCSingleByte {
public:
    BTCSingleByteTable(const char16_t* name, const char16_t* table) noexcept
        : m_name(name), m_table(table)
    {
    }
    ~BTCSingleByteTable() noexcept(false) override;

    std::int32_t convert(const signed char* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         char16_t* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    char16_t convertByte(signed char byte) override;

private:
    const char16_t* m_name;
    const char16_t* m_table;
};

/// An encoder by a table of two levels: the byte of a unit stands in `bytes` at the offset for the
/// unit's high byte plus its low byte; 0 stands for no byte.
///
/// Name and tables belong to the caller and outlive the encoder. convert() reads the tables itself;
/// a derived class with a convertChar() of its own overrides convert() too.
class ORV_API CTBSingleByteTable : public CTBSingleByte {
public:
    CTBSingleByteTable(const char16_t* name, const std::int32_t* offsets,
                       const unsigned char* bytes) noexcept
        : m_name(name), m_offsets(offsets), m_bytes(bytes)
    {
    }
    ~CTBSingleByteTable() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
    const char16_t* getEncodingName() const override;

protected:
    signed char convertChar(char16_t unit) override;

private:
    const char16_t* m_name;
    const std::int32_t* m_offsets; ///< 256
    const unsigned char* m_bytes;
};

/// IBM code page 437; 0x00 to 0x1F and 0x7F are the control characters of ASCII.
class ORV_API BTCCP437 : public BTCSingleByteTable {
public:
    BTCCP437() noexcept;
    ~BTCCP437() noexcept(false) override;
};

/// IBM code page 437.
class ORV_API CTBCP437 : public CTBSingleByteTable {
public:
    CTBCP437() noexcept;
    ~CTBCP437() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
};

/// Windows code page 1252; 0x81, 0x8D, 0x8F, 0x90 and 0x9D are no characters.
class ORV_API BTCCP1252 : public BTCSingleByteTable {
public:
    BTCCP1252() noexcept;
    ~BTCCP1252() noexcept(false) override;
};

/// Windows code page 1252.
class ORV_API CTBCP1252 : public CTBSingleByteTable {
public:
    CTBCP1252() noexcept;
    ~CTBCP1252() noexcept(false) override;

    std::int32_t convert(const char16_t* src, std::int32_t* srcPos, std::int32_t srcEnd,
                         signed char* dst, std::int32_t* dstPos, std::int32_t dstEnd) override;
};

} // namespace orv::text::charset
