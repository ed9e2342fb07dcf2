#pragma once

#include "orv/OwningArray.h"
#include "orv/Result.h"
#include "orv/StrBuf1.h"

#include <cstdint>

namespace orv {

class String;

namespace text::charset {
class ByteToCharConverter;
class CharToByteConverter;
} // namespace text::charset

/// A light text of UTF-16 code units, for code that must not pay for String: no interface, no
/// atomic operation, no allocation for a slice.
///
///     Str1Fixed<128> key;                   // its first 128 units need no heap
///     key.append(u"orv.", -1);
///     key.append(name);
///     Str1 tail = key.substring(4, -1);     // shares the buffer of key
///
/// Text that is shared is copied on the first write. It has no terminator. A length of -1 says that
/// a text is terminated and gets measured; an end of -1, or past the end, means the end. Bounds:
/// 16,777,200 units.
///
/// Errors: results. Memory that runs out throws OutOfMemoryException, but for the operations that
/// take an encoding, which turn every exception into its result.
///
/// Threads: one at a time for a Str1 and all that share its buffer.
class ORV_API Str1 : public CoreAllocated {
public:
    class Appendor;

    /// The empty text without a buffer.
    Str1() noexcept = default;
    /// The empty text with room for `capacity` units; 0 gives no buffer.
    explicit Str1(std::uint32_t capacity);
    /// Shares the text.
    Str1(const Str1& other);
    /// Shares the units from `start` up to `end`; the empty text where that is no range.
    Str1(const Str1& other, std::int32_t start, std::int32_t end);
    /// Decodes `length` bytes by the named encoding, null being the default one. The text stays
    /// empty where that fails; copyA() tells why.
    Str1(const signed char* bytes, std::int32_t length, const char16_t* encoding);
    virtual ~Str1();

    /// Whether there is no text, and how many units there are.
    bool isEmpty() const noexcept { return m_length == 0; }
    std::int32_t getLength() const noexcept { return m_length; }
    /// The text; null when it is empty.
    const char16_t* getData0() const noexcept { return m_length == 0 ? nullptr : getData1(); }
    /// The text, where there is a buffer: not before the first write.
    const char16_t* getData1() const noexcept { return m_buffer->getData() + m_offset; }
    /// Does not check the index.
    char16_t operator[](std::int32_t index) const noexcept { return getData1()[index]; }

    /// Empties the text and keeps the buffer.
    void clear() noexcept;
    /// Empties the text and lets the buffer go.
    void reset();
    /// Adds to the length without a check: for units written behind the text.
    void adjustLength(std::int32_t delta) noexcept { m_length += delta; }

    // Assignment. A Str1 is shared by setTo() and `=`, and copied by copy().

    Result setTo(const Str1& other);
    Str1& operator=(const Str1& other);
    Str1& operator=(const char16_t* text);
    Str1& operator=(const String& text);
    Result copy(const Str1& other);
    Result copy(const char16_t* text, std::int32_t length = -1);
    Result copy(const String& text);
    /// Decodes `length` bytes by the named encoding, null being the default one. On failure the
    /// text is empty, or as before where no codec answers to the name.
    Result copyA(const signed char* bytes, std::int32_t length, const char16_t* encoding);

    // Appending. The text may be part of this one.

    Result append(const char16_t* text, std::int32_t length);
    /// A `count` below 1 adds nothing.
    Result append(char16_t unit, std::int32_t count);
    Result append(const String& text);
    /// Adds the units from `start` up to `end`; nothing where that is no range.
    Result append(const Str1& text, std::int32_t start = 0, std::int32_t end = -1);
    Str1& operator+=(const char16_t* text);
    Str1& operator+=(char16_t unit);
    Str1& operator+=(const String& text);
    Str1& operator+=(const Str1& text);
    /// Adds what `length` bytes of the named encoding decode to; on failure nothing.
    Result appendA(const signed char* bytes, std::int32_t length, const char16_t* encoding);

    /// The units from `start` up to `end`, sharing the buffer.
    Str1 substring(std::int32_t start, std::int32_t end) const;

    /// Map each unit by ORVToLowerW() and ORVToUpperW(). Where no unit changes nothing is written,
    /// so shared text stays shared.
    Result toLower();
    Result toUpper();

    /// The first place of `unit` at or behind `start`, or -1; a negative `start` finds nothing.
    std::int32_t indexOf(char16_t unit, std::int32_t start = 0, bool ignoreCase = false) const;
    bool operator==(const Str1& other) const noexcept;
    bool operator==(const char16_t* text) const noexcept;
    /// The empty text always is the beginning.
    bool startsWith(const char16_t* text, std::int32_t length, bool ignoreCase) const;
    bool startsWith(const Str1& text, bool ignoreCase) const;

    String toORVString() const;

    // Bytes. A null encoding is the default one. The results are those of the converters.

    /// Stores how many bytes the text from `start` on takes.
    Result getLengthA(std::int32_t* out, const char16_t* encoding, std::int32_t start) const;
    /// Encodes into `out` with a zero byte behind, and stores the number of bytes before that.
    /// `size` bytes are at least 1. E_BUFFER_TOO_SMALL when only a part of the text fits.
    Result convertToAZ(char* out, std::int32_t size, const char16_t* encoding,
                       std::int32_t* outLength) const;
    /// The text as bytes with a zero byte behind; null on failure.
    OwningArray<char> getBytesAZ(const char16_t* encoding) const;

protected:
    /// A buffer with room for `capacity` units that a derived class offers instead of one from the
    /// heap; null here. It is used with one more count.
    virtual StrBuf1* fastAllocBuffer(std::uint32_t capacity);

    /// Makes the buffer private, with room for `capacity` units of text. The units from
    /// `keepStart` up to `keepEnd` stay what and where they are, the others get lost. Returns the
    /// room from the beginning of the text on.
    std::int32_t ensureCapacity1(std::int64_t capacity, std::int32_t keepStart,
                                 std::int32_t keepEnd);

    /// Encodes the text from `*position` on into `out`; stores the bytes written and the new
    /// position, also on failure. E_BUFFER_TOO_SMALL while text remains.
    Result convertToA(signed char* out, std::int32_t size,
                      text::charset::CharToByteConverter* encoder, std::int32_t* outLength,
                      std::int32_t* position) const;

    /// Takes `length` units of `buffer`, with a count on it, in place of what there is.
    void use(StrBuf1* buffer, std::int32_t length);

private:
    struct Kept;

    bool liesWithin(const char16_t* text) const noexcept;
    void share(const Str1& other, std::int32_t start, std::int32_t end);
    char16_t* writableData() const noexcept { return m_buffer->getData() + m_offset; }
    void moveTo(StrBuf1* buffer, const Kept& kept);
    void decode(const signed char* bytes, std::int32_t length,
                text::charset::ByteToCharConverter& decoder, std::int32_t keep);
    bool encodeOne(signed char* out, std::int32_t size, text::charset::CharToByteConverter& encoder,
                   std::int32_t* outLength, std::int32_t* position) const;
    template <class Map>
    Result mapUnits(Map map);
    template <class Take>
    Result encodeInSteps(const char16_t* encoding, std::int32_t position, Take take) const;

    StrBuf1* m_buffer = nullptr; ///< counted, may be null
    std::int32_t m_offset = 0;   ///< the first unit of the text within the buffer
    std::int32_t m_length = 0;   ///< units
};

/// Appends in a row to one Str1, reserving room ahead.
///
///     Str1::Appendor out(text, 256, 1024);   // 256 units spare at first, 1024 whenever they end
///     for (char16_t unit : units) out.fastAppend(unit);
///
/// Whoever changes the Str1 in another way meanwhile calls resync() before the next append.
class ORV_API Str1::Appendor {
public:
    /// Reserves `first` units at the first append, `later` units each time the room is used up.
    Appendor(Str1& text, std::int32_t first, std::int32_t later) noexcept
        : m_text(text), m_first(first), m_later(later)
    {
    }

    /// Appends; an `n` below 1 only reserves.
    Result firstAppend(const char16_t* text, std::int32_t n);
    Result fastAppend(const char16_t* text, std::int32_t n);
    Result fastAppend(char16_t unit)
    {
        *checkAvailable(1) = unit;
        return S_OK;
    }
    /// Reserves `n` units beside the reservation.
    void setRemCap(std::int32_t n);
    /// Forgets the room, so that the next append asks for it again.
    void resync() noexcept { m_room = 0; }
    /// Whether the first reservation has been spent.
    bool used() const noexcept { return m_first == 0; }

protected:
    /// Adds `n` units to the length and returns the place to write them to.
    char16_t* checkAvailable(std::int32_t n)
    {
        if (n > m_room) setRemCap(n);
        char16_t* const place = m_text.writableData() + m_text.m_length;
        m_room -= n;
        m_text.m_length += n;
        return place;
    }

private:
    Str1& m_text;
    std::int32_t m_room = 0; ///< units that fit without growing
    std::int32_t m_first;
    std::int32_t m_later;
};

} // namespace orv
