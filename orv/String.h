#pragma once

#include "orv/util/ByteBuffers.h"
#include "orv/util/CharBuffers.h"

#include <array>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace orv {

namespace internal {
struct Units;
}

/// How a String takes its source.
enum class AcquireMode : std::int32_t {
    AcquireCopy = 0,      ///< a private copy
    AcquireAddRef = 1,    ///< shares the buffer of the source; a copy where the source is a pointer
    AcquireAlias = 2,     ///< views the memory of the source, which the caller keeps alive
    AcquireCopyUpper = 3, ///< a private copy in upper case
};

/// The ends that trim() works on, a bit set.
enum class TrimType : std::int32_t {
    TrimLeading = 1,
    TrimTrailing = 2,
    TrimBoth = 3,
};

/// Joins the ends to trim.
constexpr TrimType operator|(TrimType a, TrimType b) noexcept
{
    return static_cast<TrimType>(static_cast<std::int32_t>(a) | static_cast<std::int32_t>(b));
}

/// A literal that knows its length, for constant tables.
struct STRUCT_ORV_STR_LIT_INFO {
    const char16_t* text;
    std::int32_t length; ///< in units, without the terminator
};

/// Text: UTF-16 code units in a shared buffer, copied on the first write.
///
///     String name(u"report");
///     String path = name;                // shares the text
///     path.append(u".txt");              // now has its own
///     if (path.endsWith(u".TXT", true)) { ... }
///
/// The copy constructor, clone(), toString() and setAddRef() share the text, at the price of one
/// atomic count; operator= and setTo() copy it. All empty strings share one buffer. A String is a
/// character buffer itself, so it goes wherever an ICharBuffer is wanted, and it can wrap any such
/// buffer. Its own interface counts the text without the zero unit that always follows it.
///
/// Lengths and positions are 32-bit counts of units. A length of -1 says that a text is terminated
/// and gets measured; a start or a count of -1, or past the end, means up to the end. getCharAt(),
/// operator[] and setCharAt() do not check their index. Room grows in steps of 16 units, so a run
/// of appends wants its capacity up front. Bounds: 2^31 - 32 units.
///
/// Errors: OutOfMemoryException leaves the text as it was. A failure of a wrapped buffer arrives as
/// ResultException.
///
/// Threads: one at a time for each String, but Strings that share a buffer may live on several
/// threads.
class ORV_API String : public util::AbstractCharBuffer {
public:
    using enum AcquireMode;
    using enum TrimType;

    class AnsiBytes;

    // Construction

    /// The empty text.
    String() : String(Counted{emptyText()}) {}
    /// Shares the text of `other`.
    String(const String& other) : m_buffer(other.m_buffer), m_plain(other.m_plain)
    {
        addBufferRef();
    }
    /// The units from `start` up to `end` of `source`, taken as `mode` says, with room for
    /// `capacity` units and terminator. AcquireAddRef shares the whole text and ignores the rest.
    /// An alias of a region that ends before the end of `source` has no zero unit behind it.
    String(AcquireMode mode, const String& source, std::int32_t start = 0, std::int32_t end = -1,
           std::int32_t capacity = 0)
    {
        if (mode == AcquireMode::AcquireAddRef) {
            useBuffer(source.m_buffer, source.m_plain);
        } else {
            takePlain(source.regionOf(mode, start, end, capacity));
        }
    }
    /// A copy of the text in `source`.
    explicit String(util::ICharBuffer* source);
    /// Wraps or copies `source`. AcquireAddRef uses it directly, and then its length must include a
    /// zero unit at its end: that unit does not count as text.
    String(AcquireMode mode, util::ICharBuffer* source);
    /// A copy of `length` units, with room for `capacity` units, terminator included.
    String(const char16_t* text, std::int32_t length = -1, std::int32_t capacity = 0)
        : String(Counted{copyOf(text, length, capacity)})
    {
    }
    /// The same as `mode` says; AcquireAddRef copies.
    String(AcquireMode mode, const char16_t* text, std::int32_t length = -1,
           std::int32_t capacity = 0);
    /// A view of the literal.
    String(const STRUCT_ORV_STR_LIT_INFO& literal);
    /// `count` times `unit`.
    String(char16_t unit, std::int32_t count, std::int32_t capacity = 0);
    /// The empty text, with room for `capacity` units and terminator.
    explicit String(std::int32_t capacity);

    /// Decodes `length` bytes by the named encoding, null being the default one. Throws
    /// UnknownEncodingException for a name that no codec answers to.
    String(const char* text, std::int32_t length = -1, const char16_t* encoding = nullptr,
           std::int32_t capacity = 0);
    String(const signed char* text, std::int32_t length = -1, const char16_t* encoding = nullptr,
           std::int32_t capacity = 0);
    String(const unsigned char* text, std::int32_t length = -1, const char16_t* encoding = nullptr,
           std::int32_t capacity = 0);

    String(char) = delete;
    String(wchar_t) = delete;
    String(bool) = delete;
    String(std::nullptr_t) = delete;

    ~String() noexcept(false) override
    {
        dropBytes();
        releaseBuffer();
    }

    /// The same as the matching constructors.
    static String CORVString(const String& text);
    static String CORVString(const char16_t* text, std::int32_t length, std::int32_t capacity);
    static String CORVString(const char* text, std::int32_t length, const char16_t* encoding,
                             std::int32_t capacity);

    // Assignment

    /// Copies the text; setAddRef() shares it.
    String& operator=(const String& other);
    String& operator=(const char16_t* text);
    String& operator=(char16_t unit);
    /// Decodes by the default encoding.
    String& operator=(const char* text);

    /// Shares the text of `other`. The bytes that getBytes() gave last stay until the next write.
    String& setAddRef(const String& other);
    String& setTo(const String& other);
    String& setTo(const char16_t* text, std::int32_t length = -1);
    String& setTo(char16_t unit, std::int32_t count);
    /// As `mode` says. The bytes that getBytes() gave last stay over an alias until the next write.
    String& setTo(AcquireMode mode, const char16_t* text, std::int32_t length = -1);
    String& setTo(AcquireMode mode, const String& source, std::int32_t start = 0,
                  std::int32_t end = -1);
    /// Decodes `length` bytes by the named encoding, null being the default one.
    String& setTo(const char* text, std::int32_t length, const char16_t* encoding);
    String& setTo(const signed char* text, std::int32_t length, const char16_t* encoding);
    String& setTo(const unsigned char* text, std::int32_t length, const char16_t* encoding);
    void clear();

    // Editing

    String& append(const char16_t* text, std::int32_t length = -1);
    String& append(char16_t unit)
    {
        char16_t* const end = roomBehind(1);
        if (end == nullptr) return append(unit, 1);
        *end = unit;
        endText(end + 1);
        return *this;
    }
    String& append(char16_t unit, std::int32_t count);
    String& append(const String& text);
    String& operator+=(const char16_t* text) { return append(text); }
    String& operator+=(char16_t unit) { return append(unit); }
    String& operator+=(const String& text) { return append(text); }
    String& prepend(const char16_t* text, std::int32_t length = -1);
    String& prepend(char16_t unit, std::int32_t count = 1);
    String& prepend(const String& text);
    String& insert(std::int32_t position, const char16_t* text, std::int32_t length = -1);
    String& insert(std::int32_t position, const String& text);
    String& remove(std::int32_t start, std::int32_t count);

    /// Puts the units of `text` from `sourceOffset` on in place of `count` units at `start`. A
    /// start of -1 or past the end appends; a count of -1 reaches to the end. `text` may lie in
    /// this String.
    String& replace(std::int32_t start, std::int32_t count, const char16_t* text,
                    std::int32_t length, std::int32_t sourceOffset = 0);
    String& replace(std::int32_t start, std::int32_t count, const String& text,
                    std::int32_t sourceOffset = 0);
    String& replace(std::int32_t start, std::int32_t count, char16_t unit, std::int32_t repeat);

    /// Cuts or fills up with `fill` to `length` units.
    void resize(std::int32_t length, char16_t fill);
    void toLower();
    void toUpper();
    /// Replaces each `from` by `to`.
    void translate(char16_t from, char16_t to);
    /// Leaves the text as it is: there is no translation by tables.
    void translate(const char16_t* from, std::int32_t fromLength, const char16_t* to,
                   std::int32_t toLength);
    void translate(const char16_t* from, const char16_t* to);
    void translate(const String& from, const String& to);
    /// Takes blanks, tabs, carriage returns and line feeds off the ends.
    void trim(TrimType type = TrimType::TrimBoth);
    void trim(char16_t unit, TrimType type);
    /// Takes the units of the terminated set `units` off the ends; `length` is not looked at.
    void trim(const char16_t* units, std::int32_t length, TrimType type);
    void trim(const String& units, TrimType type);
    /// Does not check the index.
    void setCharAt(std::int32_t index, char16_t unit);

    // Reading

    std::int32_t getLength() const override { return textLength(); }
    /// The text, zero-terminated.
    const char16_t* getData() const override
    {
        return m_plain != nullptr ? m_plain->plainData() : m_buffer->GetData();
    }
    /// Does not check the index.
    char16_t getCharAt(std::int32_t index) const
    {
        return m_plain != nullptr ? m_plain->plainData()[index] : foreignUnit(index);
    }
    char16_t operator[](std::int32_t index) const { return getCharAt(index); }
    /// A copy of the units from `start` up to `end`, which -1 puts at the end.
    String substring(std::int32_t start, std::int32_t end = -1) const
    {
        return String(Counted{regionOf(AcquireMode::AcquireCopy, start, end, 0)});
    }
    /// This text, shared.
    String toString() const override;
    /// A heap String that shares this text, with count 0. Throws CloneNotSupportedException for an
    /// object of a derived class.
    Object* clone() const override;

    /// The text, or with a `bool` its bytes in the default encoding; the value does not matter.
    const char16_t* getDataT(std::int32_t) const { return getData(); }
    const char* getDataT(bool) const { return getBytes(static_cast<const char16_t*>(nullptr)); }
    /// The same, with the read lock left held.
    const char16_t* getReadLockT(std::int32_t) const { return getReadLock(); }
    const char* getReadLockT(bool) const { return getBytesReadLock(nullptr); }

    // Comparing. `ignoreCase` compares units in lower case by ORVToLowerW().

    /// Whether the region of `count` units at `start` equals the units of `text` from `offset` on.
    bool regionMatches(std::int32_t start, std::int32_t count, const char16_t* text,
                       std::int32_t length, std::int32_t offset, bool ignoreCase = false) const;
    bool regionMatches(std::int32_t start, std::int32_t count, const String& text,
                       std::int32_t offset, bool ignoreCase = false) const;
    /// The order of such regions: -1 or 1 at the first units that differ (case ignored: their
    /// difference), else the difference in length.
    std::int32_t regionCompare(std::int32_t start, std::int32_t count, const char16_t* text,
                               std::int32_t length, std::int32_t offset,
                               bool ignoreCase = false) const;
    std::int32_t regionCompare(std::int32_t start, std::int32_t count, const String& text,
                               std::int32_t offset, bool ignoreCase = false) const;
    bool equals(const char16_t* text, std::int32_t length, bool ignoreCase = false) const;
    bool equals(const char16_t* text, bool ignoreCase = false) const
    {
        return equals(text, -1, ignoreCase);
    }
    bool equals(const String& text, bool ignoreCase = false) const
    {
        if (ignoreCase || m_plain == nullptr || text.m_plain == nullptr) {
            return regionMatches(0, -1, text, 0, ignoreCase);
        }
        const std::int32_t length = m_plain->plainLength();
        if (length != text.m_plain->plainLength()) return false;
        if (m_plain == text.m_plain) return true;
        return std::memcmp(m_plain->plainData(), text.m_plain->plainData(),
                           static_cast<std::size_t>(length - 1) * sizeof(char16_t)) == 0;
    }
    /// Whether `other` is a String of the same text.
    bool equals(const Object& other) const override;
    std::int32_t compare(const char16_t* text, std::int32_t length, bool ignoreCase = false) const;
    std::int32_t compare(const char16_t* text, bool ignoreCase = false) const
    {
        return compare(text, -1, ignoreCase);
    }
    std::int32_t compare(const String& text, bool ignoreCase = false) const;
    /// compare() with another String; throws CastFailedException for anything else.
    std::int32_t compareTo(const Object& other) const override;
    /// Whether the text begins with `text`; the empty text always is its beginning.
    bool startsWith(const char16_t* text, std::int32_t length, bool ignoreCase = false) const;
    bool startsWith(const char16_t* text, bool ignoreCase = false) const
    {
        return startsWith(text, -1, ignoreCase);
    }
    bool startsWith(const String& text, bool ignoreCase = false) const;
    bool endsWith(const char16_t* text, std::int32_t length, bool ignoreCase = false) const;
    bool endsWith(const char16_t* text, bool ignoreCase = false) const
    {
        return endsWith(text, -1, ignoreCase);
    }
    bool endsWith(const String& text, bool ignoreCase = false) const;
    /// Whether indexOf() finds `text`; the empty text is never found.
    bool contains(const char16_t* text, std::int32_t length, bool ignoreCase = false) const;
    bool contains(const char16_t* text, bool ignoreCase = false) const
    {
        return contains(text, -1, ignoreCase);
    }
    bool contains(const String& text, bool ignoreCase = false) const;

    /// A hash of at most 63 units, sampled at equal steps: long texts that differ only between the
    /// steps hash alike.
    std::uint32_t hashCode() const override;
    std::uint32_t hashCode(bool ignoreCase) const;

    // Searching. All return a position or -1. Forward searches begin at `start`; for backward ones
    // `start` is the last unit that may belong to the match, -1 or past the end being the last one.
    // The empty text and the empty set are found nowhere.

    std::int32_t indexOf(char16_t unit, std::int32_t start = 0, bool ignoreCase = false) const;
    std::int32_t indexOf(const char16_t* text, std::int32_t length, std::int32_t start = 0,
                         bool ignoreCase = false) const;
    std::int32_t indexOf(const char16_t* text, bool ignoreCase = false) const
    {
        return indexOf(text, -1, 0, ignoreCase);
    }
    std::int32_t indexOf(const String& text, std::int32_t start = 0, bool ignoreCase = false) const;
    std::int32_t lastIndexOf(char16_t unit, std::int32_t start = -1, bool ignoreCase = false) const;
    std::int32_t lastIndexOf(const char16_t* text, std::int32_t length, std::int32_t start = -1,
                             bool ignoreCase = false) const;
    std::int32_t lastIndexOf(const char16_t* text, bool ignoreCase = false) const
    {
        return lastIndexOf(text, -1, -1, ignoreCase);
    }
    std::int32_t lastIndexOf(const String& text, std::int32_t start = -1,
                             bool ignoreCase = false) const;
    /// The first unit that is in the set `units`.
    std::int32_t findFirstOf(const char16_t* units, std::int32_t length, std::int32_t start = 0,
                             bool ignoreCase = false) const;
    std::int32_t findFirstOf(const String& units, std::int32_t start = 0,
                             bool ignoreCase = false) const;
    std::int32_t findFirstOfCase(const char16_t* units, std::int32_t length,
                                 std::int32_t start = 0) const;
    std::int32_t findFirstOfCase(const String& units, std::int32_t start = 0) const;
    /// The first unit that is not in the set `units`.
    std::int32_t findFirstNotOf(const char16_t* units, std::int32_t length, std::int32_t start = 0,
                                bool ignoreCase = false) const;
    std::int32_t findFirstNotOf(const String& units, std::int32_t start = 0,
                                bool ignoreCase = false) const;
    /// The last unit that is in the set `units`.
    std::int32_t findLastOf(const char16_t* units, std::int32_t length, std::int32_t start = -1,
                            bool ignoreCase = false) const;
    /// The last unit that is not in the set `units`.
    std::int32_t findLastNotOf(const char16_t* units, std::int32_t length, std::int32_t start = -1,
                               bool ignoreCase = false) const;
    /// Searches `text` as a whole, as lastIndexOf() does; the set searches take a pointer.
    std::int32_t findLastOf(const String& text, std::int32_t start = -1,
                            bool ignoreCase = false) const;
    /// Searches `text` as a whole, as lastIndexOf() does; the set searches take a pointer.
    std::int32_t findLastNotOf(const String& text, std::int32_t start = -1,
                               bool ignoreCase = false) const;

    // Bytes. A null encoding is the default one; an unknown name throws UnknownEncodingException.

    /// Encodes into `out` and returns the bytes written: what fits of the text, and a zero byte
    /// where there is room for it, which is counted too. A text that ends in a leading surrogate
    /// throws InvalidCharacterException.
    std::int32_t getBytes(signed char* out, std::int32_t size, const char16_t* encoding) const;
    std::int32_t getBytes(char* out, std::int32_t size, const char16_t* encoding) const;
    std::int32_t getBytes(unsigned char* out, std::int32_t size, const char16_t* encoding) const;
    /// Encodes into `out` with a zero byte behind, both counted in its length.
    void getBytes(util::IByteBuffer* out, const char16_t* encoding) const;
    /// The text as bytes with a zero byte behind, kept by this String until the next call with
    /// another encoding or the next write.
    const char* getBytes(const char16_t* encoding = nullptr) const;
    /// The same with the read lock left held; end it by releaseReadLock().
    const char* getBytesReadLock(const char16_t* encoding) const;

    // Values as text, "%g" for the floating ones: six significant digits.

    static String valueOf(bool value);
    static String valueOf(char16_t unit);
    static String valueOf(int value);
    static String valueOf(unsigned int value);
    static String valueOf(long value);
    static String valueOf(unsigned long value);
    static String valueOf(long long value);
    static String valueOf(unsigned long long value);
    static String valueOf(float value);
    static String valueOf(double value);
    static String valueOf(wchar_t) = delete;
    template <class T>
    static String valueOf(T*) = delete;

    // Formatting

    /// Sets this text to `pattern` with each `{0}`, `{1}` ... replaced by the terminated text of
    /// that number. Numbering stops at the first number that does not occur in the pattern, and
    /// text put in is not looked at again. Missing arguments leave their placeholders.
    template <std::convertible_to<const char16_t*>... Arguments>
    const String& format(const char16_t* pattern, std::int32_t length, Arguments... arguments)
    {
        const std::array<const char16_t*, sizeof...(Arguments) + 1> list{arguments..., nullptr};
        return formatList(pattern, length, list.data(), sizeof...(Arguments));
    }
    template <std::convertible_to<const char16_t*>... Arguments>
    const String& format(const String& pattern, Arguments... arguments)
    {
        const String held(pattern); // the pattern may be this String
        return format(held.getData(), held.getLength(), arguments...);
    }
    /// The same over a list of `const char16_t*`, with one for each placeholder.
    const String& formatv(const char16_t* pattern, std::int32_t length, std::va_list arguments);
    const String& formatv(const String& pattern, std::va_list arguments);

    // The buffer that a String is. Lengths leave the zero unit out.

    const char16_t* getReadLock() const override;
    void releaseReadLock() const override;
    bool isWritable() const override;
    char16_t* getWriteLock(std::int32_t capacity) override;
    char16_t* ensureCapacity(std::int32_t capacity) override;
    /// Ends writing with `length` units; a negative one measures up to the first zero unit. Puts
    /// the zero unit behind the text. Where there is no memory for that many, the bracket stays
    /// open, to be ended with a length that fits.
    void releaseWriteLock(std::int32_t length) override;
    void freeExtra() override;

    std::int32_t GetLength() const override;
    const char16_t* GetData() const override;
    Result GetReadLock(const char16_t** data) const override;
    Result ReleaseReadLock() const override;
    std::int16_t IsWritable() const override;
    Result GetWriteLock(std::int32_t capacity, char16_t** data) override;
    Result EnsureCapacity(std::int32_t capacity, char16_t** data) override;
    Result ReleaseWriteLock(std::int32_t length) override;
    Result FreeExtra() override;

private:
    class Reading;
    class Writing;

    void addBufferRef() const
    {
        if (m_plain != nullptr) {
            m_plain->InternalAddRef();
        } else {
            m_buffer->AddRef();
        }
    }
    void releaseBuffer() const
    {
        if (m_plain == nullptr) {
            if (m_buffer != nullptr) m_buffer->Release();
            return;
        }
        // Whoever holds the only count is alone with the buffer and needs no locked operation.
        if (m_plain->GetSettledRefCount() == 1 || m_plain->InternalRelease() == 0) delete m_plain;
    }
    void useBuffer(util::ICharBuffer* buffer, util::PlainCharBuffer* plain);
    void usePlain(util::PlainCharBuffer* buffer);
    /// A buffer whose count is handed over.
    struct Counted {
        util::PlainCharBuffer* buffer;
    };
    explicit String(Counted counted) noexcept : m_buffer(counted.buffer), m_plain(counted.buffer) {}
    void takePlain(util::PlainCharBuffer* counted)
    {
        releaseBuffer();
        m_buffer = counted;
        m_plain = counted;
    }
    void shareEmpty();
    static util::PlainCharBuffer* emptyText();
    static util::PlainCharBuffer* copyOf(const char16_t* text, std::int32_t length,
                                         std::int32_t capacity);
    static util::PlainCharBuffer* regionOf(internal::Units text, AcquireMode mode,
                                           std::int32_t start, std::int32_t end,
                                           std::int32_t capacity);
    util::PlainCharBuffer* regionOf(AcquireMode mode, std::int32_t start, std::int32_t end,
                                    std::int32_t capacity) const;
    static util::PlainCharBuffer* viewOf(const char16_t* text, std::int32_t length);
    static util::PlainCharBuffer* acquire(AcquireMode mode, const char16_t* text,
                                          std::int32_t length, std::int32_t capacity);
    void dropBytes() const
    {
        if (m_bytes != nullptr) release(std::exchange(m_bytes, nullptr));
    }
    static void release(util::RWByteBuffer* bytes);
    std::int32_t textLength() const
    {
        return m_plain != nullptr ? m_plain->plainLength() - 1 : foreignLength();
    }
    std::int32_t foreignLength() const;
    char16_t foreignUnit(std::int32_t index) const;
    /// Where `count` units more fit in place; null where writing them takes more than that.
    char16_t* roomBehind(std::int32_t count) const
    {
        if (m_plain == nullptr || m_bytes != nullptr) return nullptr;
        const std::int32_t length = m_plain->plainLength();
        if (m_plain->plainCapacity() - length < count) return nullptr;
        if (m_plain->GetSettledRefCount() > 1) return nullptr;
        return const_cast<char16_t*>(m_plain->plainData()) + length - 1;
    }
    /// Ends a plain text that is written in place at `end`.
    void endText(char16_t* end)
    {
        *end = u'\0';
        static_cast<util::RWCharBuffer*>(m_plain)->setPlainLength(
            static_cast<std::int32_t>(end - m_plain->plainData()) + 1);
    }
    bool isWritablePlain() const { return m_plain != nullptr && m_plain->plainCapacity() > 0; }
    bool isPrivate() const;
    void copyOnWrite(std::int32_t capacity);
    char16_t* openWrite(std::int32_t capacity);
    char16_t* growWrite(std::int32_t capacity);
    void closeWrite(std::int32_t length);
    struct Splice;
    template <class Put>
    void splicePlain(const Splice& splice, const char16_t* source, Put put);
    template <class Put>
    void splice(std::int32_t start, std::int32_t count, std::int32_t added, const char16_t* source,
                Put put);
    void trimSet(const char16_t* set, TrimType type);
    void internalSetTo(const signed char* text, std::int32_t length, const char16_t* encoding,
                       std::int32_t capacity);
    const String& formatList(const char16_t* pattern, std::int32_t length,
                             const char16_t* const* arguments, std::size_t count);

    util::ICharBuffer* m_buffer = nullptr;    ///< counted, never null once built
    util::PlainCharBuffer* m_plain = nullptr; ///< m_buffer where its fields may be read directly
    mutable util::RWByteBuffer* m_bytes = nullptr; ///< what getBytes() gave last, or null
};

/// Equality of texts, case-sensitive.
inline bool operator==(const String& a, const String& b)
{
    return a.equals(b, false);
}
inline bool operator==(const String& a, const char16_t* b)
{
    return a.equals(b, -1, false);
}

namespace internal {

/// The room that texts of both lengths want together. A sum beyond 32 bits asks for none, and then
/// appending finds that it cannot be had.
constexpr std::int32_t roomForBoth(std::int32_t a, std::int32_t b) noexcept
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b) +
                                     1);
}

} // namespace internal

/// Concatenation into a text with room for both.
inline String operator+(const String& a, const String& b)
{
    String result(AcquireMode::AcquireCopy, a, 0, -1,
                  internal::roomForBoth(a.getLength(), b.getLength()));
    result.append(b);
    return result;
}
inline String operator+(const String& a, const char16_t* b)
{
    const std::int32_t length = ORVStrLenW(b);
    String result(AcquireMode::AcquireCopy, a, 0, -1, internal::roomForBoth(a.getLength(), length));
    result.append(b, length);
    return result;
}
inline String operator+(const char16_t* a, const String& b)
{
    const std::int32_t length = ORVStrLenW(a);
    String result(a, length, internal::roomForBoth(length, b.getLength()));
    result.append(b);
    return result;
}

} // namespace orv
