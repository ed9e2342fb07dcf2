#pragma once

#include "orv/CoreAllocated.h"
#include "orv/Export.h"

#include <cstdint>

namespace orv {

/// The counted block of code units behind one or more Str1.
///
/// The count is plain: a StrBuf1 and all that share it belong to one thread at a time. The units
/// have no terminator. A buffer starts with count 0 and deletes itself when Release() brings the
/// count back to 0. Bounds: 16,777,215 units.
class ORV_API StrBuf1 : public CoreAllocated {
public:
    /// The largest capacity, in units.
    static constexpr std::uint32_t MAX_CAPACITY = 0xFFFFFF;
    /// Bits for the constructor and setHeapBits().
    static constexpr std::uint32_t FREE_DATA = 1u << 24;   ///< the data goes to std::free
    static constexpr std::uint32_t DELETE_DATA = 1u << 25; ///< to orvcore::deallocate()

    /// `heapBits` says how the data is freed; 0 leaves it alone. Data with a capacity of 0 is only
    /// read.
    StrBuf1(char16_t* data, std::uint32_t capacity, std::uint32_t heapBits = 0) noexcept
        : m_data(data), m_word((capacity & MAX_CAPACITY) | heapBits)
    {
    }
    StrBuf1(const StrBuf1&) = delete;
    StrBuf1& operator=(const StrBuf1&) = delete;
    virtual ~StrBuf1();

    /// Both return the new count.
    virtual std::int32_t AddRef();
    virtual std::int32_t Release();

    /// The capacity when the one holder may write, 0 otherwise. In a static instance the count
    /// that initStaticInstance() took is left out, unless `plainly` is not 0.
    virtual std::int32_t isPrivatelyHeld(std::int16_t plainly) const;

    /// The capacity in units, whoever may write.
    virtual std::int32_t getBufCapacity() const;

    /// The first unit.
    char16_t* getData() const noexcept { return m_data; }
    /// Sets the capacity told, not the memory; above MAX_CAPACITY it is cut to its low 24 bits.
    void setCapacityValue(std::uint32_t capacity) noexcept
    {
        m_word = (m_word & ~MAX_CAPACITY) | (capacity & MAX_CAPACITY);
    }
    /// How the data is freed: FREE_DATA, DELETE_DATA or 0.
    std::uint32_t getHeapBits() const noexcept { return m_word & (FREE_DATA | DELETE_DATA); }
    void setHeapBits(std::uint32_t bits) noexcept
    {
        m_word = (m_word & ~(FREE_DATA | DELETE_DATA)) | (bits & (FREE_DATA | DELETE_DATA));
    }

    /// Takes a count for good, so that the buffer never deletes itself: for members and statics.
    /// With `alwaysPrivate` not 0 its holders may write no matter how many they are.
    void initStaticInstance(std::int16_t alwaysPrivate);

private:
    static constexpr std::uint32_t STATIC_INSTANCE = 1u << 26;
    static constexpr std::uint32_t ALWAYS_PRIVATE = 1u << 27;

    char16_t* m_data;
    std::int32_t m_count = 0;
    std::uint32_t m_word; ///< capacity in the low 24 bits, flags above
};

/// A buffer over memory that it does not free: a caller's, or what follows it in its own block.
class ORV_API StrBuf1Wrap : public StrBuf1 {
public:
    StrBuf1Wrap(const char16_t* data, std::uint32_t capacity) noexcept
        : StrBuf1(const_cast<char16_t*>(data), capacity)
    {
    }
    ~StrBuf1Wrap() override;

    /// A buffer with its units behind it in one block, with count 0. The capacity is rounded up to
    /// a multiple of 16. Throws OutOfMemoryException, past the bounds too.
    static StrBuf1Wrap* newStrBuf1Cap(std::int64_t capacity);

    /// `capacity` rounded up to a multiple of 16.
    static constexpr std::int64_t normalizeCapacity(std::int64_t capacity) noexcept
    {
        return (capacity + 15) & ~std::int64_t{15};
    }
};

/// A buffer that is not counted: for texts that live as long as all that share them.
class ORV_API StrBuf1Static : public StrBuf1 {
public:
    using StrBuf1::StrBuf1;
    ~StrBuf1Static() override;

    std::int32_t AddRef() override;
    std::int32_t Release() override;
};

/// A buffer with `N` units inside.
template <std::uint32_t N>
class ORV_API StrBuf1Fixed : public StrBuf1Wrap {
    static_assert(N > 0 && N <= MAX_CAPACITY);

public:
    StrBuf1Fixed() noexcept : StrBuf1Wrap(m_units, N) {}
    ~StrBuf1Fixed() override;

private:
    char16_t m_units[N];
};

template <std::uint32_t N>
StrBuf1Fixed<N>::~StrBuf1Fixed() = default;

extern template class StrBuf1Fixed<128>;

} // namespace orv
