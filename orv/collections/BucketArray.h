#pragma once

#include "orv/OwningArray.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace orv::collections::internal {

/// The remainder of 32-bit numbers by one divisor, exact for all of them, in two multiplications.
///
/// D. Lemire, O. Kaser, N. Kurz: Faster remainder by direct computation, 2019.
class Remainder {
public:
    explicit constexpr Remainder(std::uint32_t divisor) noexcept
        : m_divisor(divisor), m_reciprocal(~std::uint64_t{0} / divisor + 1)
    {
    }

    constexpr std::uint32_t operator()(std::uint32_t number) const noexcept
    {
        const std::uint64_t fraction = m_reciprocal * number;
        return static_cast<std::uint32_t>((Wide{fraction} * m_divisor) >> 64);
    }

private:
    __extension__ using Wide = unsigned __int128;

    std::uint32_t m_divisor;
    std::uint64_t m_reciprocal; ///< 2^64 / divisor, rounded up; 0 for 1
};

/// The heads of the chains of a hash table, and which of them are used, a bit for each.
///
/// The bits make empty buckets cheap: they are never read, nor written before their first use, and
/// a walk passes them 64 at a time. Memory is taken by open(); until then all buckets are empty.
/// `Link` leads to an entry and `NONE` to none.
template <class Link, Link NONE>
class BucketArray {
public:
    explicit BucketArray(std::int32_t capacity) noexcept : m_capacity(capacity) {}

    std::int32_t capacity() const noexcept { return m_capacity; }
    bool isOpen() const noexcept { return static_cast<bool>(m_memory); }

    /// Takes the memory.
    void open()
    {
        const std::size_t words = wordOf(m_capacity - 1) + 1;
        // NOLINTNEXTLINE(bugprone-sizeof-expression): a link may well be a pointer
        const std::size_t bytes = static_cast<std::size_t>(m_capacity) * sizeof(Link);
        const std::size_t links = (bytes + 7) / sizeof(std::uint64_t);
        m_memory = OwningArray<std::uint64_t>(words + links);
        std::fill_n(m_memory.get(), words, 0);
        m_links = reinterpret_cast<Link*>(m_memory.get() + words);
        m_remainder = Remainder(static_cast<std::uint32_t>(m_capacity));
    }

    /// Empties all buckets and gives the memory back.
    void close() noexcept { m_memory = OwningArray<std::uint64_t>(); }

    /// The bucket of an open array.
    std::int32_t bucketOf(std::uint32_t hash) const noexcept
    {
        return static_cast<std::int32_t>(m_remainder(hash));
    }

    /// The first entry of an open array's bucket.
    Link head(std::int32_t bucket) const noexcept
    {
        return (m_memory[wordOf(bucket)] & bitOf(bucket)) != 0 ? m_links[bucket] : NONE;
    }

    void setHead(std::int32_t bucket, Link link) noexcept
    {
        m_memory[wordOf(bucket)] |= bitOf(bucket);
        m_links[bucket] = link;
    }

    void setEmpty(std::int32_t bucket) noexcept { m_memory[wordOf(bucket)] &= ~bitOf(bucket); }

    /// The first used bucket at `bucket` or behind it; the capacity where there is none.
    std::int32_t usedFrom(std::int32_t bucket) const noexcept
    {
        if (!isOpen() || bucket >= m_capacity) return m_capacity;
        const std::size_t last = wordOf(m_capacity - 1);
        std::size_t word = wordOf(bucket);
        std::uint64_t bits = m_memory[word] & (~std::uint64_t{0} << (bucket % 64));
        while (bits == 0) {
            if (word == last) return m_capacity;
            bits = m_memory[++word];
        }
        return static_cast<std::int32_t>(word * 64) + std::countr_zero(bits);
    }

    /// The last used bucket before `bucket`; -1 where there is none.
    std::int32_t usedBefore(std::int32_t bucket) const noexcept
    {
        if (!isOpen() || bucket <= 0) return -1;
        std::size_t word = wordOf(bucket - 1);
        std::uint64_t bits = m_memory[word] & (~std::uint64_t{0} >> (63 - (bucket - 1) % 64));
        while (bits == 0) {
            if (word == 0) return -1;
            bits = m_memory[--word];
        }
        return static_cast<std::int32_t>(word * 64) + 63 - std::countl_zero(bits);
    }

private:
    static std::size_t wordOf(std::int32_t bucket) noexcept
    {
        return static_cast<std::size_t>(bucket) / 64;
    }
    static std::uint64_t bitOf(std::int32_t bucket) noexcept
    {
        return std::uint64_t{1} << (bucket % 64);
    }

    std::int32_t m_capacity;
    Remainder m_remainder{1};
    OwningArray<std::uint64_t> m_memory; ///< the bits, then the links
    Link* m_links = nullptr;
};

} // namespace orv::collections::internal
