#pragma once

#include "bench/charset/Conversion.h"

#include <array>
#include <cstdint>
#include <cstring>

#if __has_include(<emmintrin.h>)
#include <emmintrin.h>
#endif

/// \file
/// Bounds of the machine, and a careful loop for comparison. None of them takes part in the choice
/// of the best.

namespace orv::bench {

/// The traffic of the stores alone.
class CopyDecoder {
public:
    static constexpr const char* name = "limit_memcpy";
    explicit CopyDecoder(Units expected) : m_expected(expected) {}
    bool valid() const { return true; }
    Units operator()(Bytes, std::u16string& out)
    {
        std::memcpy(out.data(), m_expected.data(), m_expected.size() * 2);
        return {out.data(), m_expected.size()};
    }

private:
    Units m_expected;
};

class CopyEncoder {
public:
    static constexpr const char* name = "limit_memcpy";
    explicit CopyEncoder(Bytes expected) : m_expected(expected) {}
    bool valid() const { return true; }
    Bytes operator()(Units, std::string& out)
    {
        std::memcpy(out.data(), m_expected.data(), m_expected.size());
        return {out.data(), m_expected.size()};
    }

private:
    Bytes m_expected;
};

#if __has_include(<emmintrin.h>)
/// The checked widening of nothing but ASCII.
struct WideningDecoder {
    static constexpr const char* name = "limit_sse2";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        const __m128i zero = _mm_setzero_si128();
        std::size_t i = 0;
        for (; i + 16 <= in.size(); i += 16) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in.data() + i));
            if (_mm_movemask_epi8(bytes) != 0) break;
            auto* const to = reinterpret_cast<__m128i*>(out.data() + i);
            _mm_storeu_si128(to, _mm_unpacklo_epi8(bytes, zero));
            _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(bytes, zero));
        }
        for (; i < in.size(); ++i) out[i] = static_cast<unsigned char>(in[i]);
        return {out.data(), i};
    }
};

/// The checked narrowing of nothing but ASCII.
struct NarrowingEncoder {
    static constexpr const char* name = "limit_sse2";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        const __m128i high = _mm_set1_epi16(static_cast<short>(0xFF80));
        std::size_t i = 0;
        for (; i + 16 <= in.size(); i += 16) {
            const auto* const from = reinterpret_cast<const __m128i*>(in.data() + i);
            const __m128i a = _mm_loadu_si128(from);
            const __m128i b = _mm_loadu_si128(from + 1);
            const __m128i bad = _mm_and_si128(_mm_or_si128(a, b), high);
            const __m128i good = _mm_cmpeq_epi16(bad, _mm_setzero_si128());
            if (_mm_movemask_epi8(good) != 0xFFFF) break;
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out.data() + i), _mm_packus_epi16(a, b));
        }
        for (; i < in.size(); ++i) out[i] = static_cast<char>(in[i]);
        return {out.data(), i};
    }
};
#endif

/// What careful code without vectors gives: a step of eight bytes over ASCII, else a character at
/// a time.
struct LoopDecoder {
    static constexpr const char* name = "ref_scalar_loop";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        const auto* s = reinterpret_cast<const unsigned char*>(in.data());
        const auto* const end = s + in.size();
        char16_t* d = out.data();
        const auto tail = [](unsigned char byte) { return (byte & 0xC0) == 0x80; };
        while (s < end) {
            if (*s < 0x80) {
                std::uint64_t eight;
                while (end - s >= 8 &&
                       (std::memcpy(&eight, s, 8), (eight & 0x8080808080808080u) == 0)) {
                    for (int i = 0; i < 8; ++i) d[i] = s[i];
                    s += 8;
                    d += 8;
                }
                while (s < end && *s < 0x80) *d++ = *s++;
            } else if (*s >= 0xC2 && *s < 0xE0 && end - s >= 2 && tail(s[1])) {
                *d++ = static_cast<char16_t>((s[0] & 0x1F) << 6 | (s[1] & 0x3F));
                s += 2;
            } else if ((*s & 0xF0) == 0xE0 && end - s >= 3 && tail(s[1]) && tail(s[2])) {
                const unsigned c = (s[0] & 0x0Fu) << 12 | (s[1] & 0x3Fu) << 6 | (s[2] & 0x3Fu);
                *d++ = static_cast<char16_t>(c < 0x800 || (c & 0xF800) == 0xD800 ? 0xFFFD : c);
                s += 3;
            } else if ((*s & 0xF8) == 0xF0 && end - s >= 4 && tail(s[1]) && tail(s[2]) &&
                       tail(s[3])) {
                const unsigned c = ((s[0] & 7u) << 18 | (s[1] & 0x3Fu) << 12 | (s[2] & 0x3Fu) << 6 |
                                    (s[3] & 0x3Fu)) -
                                   0x10000;
                if (c > 0xFFFFF) {
                    *d++ = 0xFFFD;
                } else {
                    *d++ = static_cast<char16_t>(0xD800 | c >> 10);
                    *d++ = static_cast<char16_t>(0xDC00 | (c & 0x3FF));
                }
                s += 4;
            } else {
                *d++ = 0xFFFD;
                ++s;
            }
        }
        return {out.data(), static_cast<std::size_t>(d - out.data())};
    }
};

struct LoopEncoder {
    static constexpr const char* name = "ref_scalar_loop";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        const char16_t* s = in.data();
        const char16_t* const end = s + in.size();
        char* d = out.data();
        const auto put = [&d](unsigned byte) { *d++ = static_cast<char>(byte); };
        while (s < end) {
            unsigned c = *s++;
            if (c < 0x80) {
                put(c);
                std::uint64_t four;
                while (end - s >= 4 &&
                       (std::memcpy(&four, s, 8), (four & 0xFF80FF80FF80FF80u) == 0)) {
                    for (int i = 0; i < 4; ++i) d[i] = static_cast<char>(s[i]);
                    s += 4;
                    d += 4;
                }
            } else if (c < 0x800) {
                put(0xC0 | c >> 6);
                put(0x80 | (c & 0x3F));
            } else if ((c & 0xF800) != 0xD800) {
                put(0xE0 | c >> 12);
                put(0x80 | (c >> 6 & 0x3F));
                put(0x80 | (c & 0x3F));
            } else if (c < 0xDC00 && s < end && (*s & 0xFC00) == 0xDC00) {
                c = 0x10000 + ((c & 0x3FF) << 10 | (*s++ & 0x3FFu));
                put(0xF0 | c >> 18);
                put(0x80 | (c >> 12 & 0x3F));
                put(0x80 | (c >> 6 & 0x3F));
                put(0x80 | (c & 0x3F));
            } else {
                put('?');
            }
        }
        return {out.data(), static_cast<std::size_t>(d - out.data())};
    }
};

/// One look-up a byte, without a test.
class TableDecoder {
public:
    static constexpr const char* name = "limit_table256";
    TableDecoder(Bytes bytes, Units units)
    {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            m_table[static_cast<unsigned char>(bytes[i])] = units[i];
        }
    }
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        char16_t* const to = out.data();
        const char16_t* const table = m_table.data();
        for (std::size_t i = 0; i < in.size(); ++i) {
            to[i] = table[static_cast<unsigned char>(in[i])];
        }
        return {to, in.size()};
    }

private:
    std::array<char16_t, 256> m_table{};
};

/// One look-up a unit in a table of 64 KiB, without a test.
class TableEncoder {
public:
    static constexpr const char* name = "limit_table64k";
    TableEncoder(Units units, Bytes bytes) : m_table(65536, '?')
    {
        for (std::size_t i = 0; i < bytes.size(); ++i) m_table[units[i]] = bytes[i];
    }
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        char* const to = out.data();
        const char* const table = m_table.data();
        for (std::size_t i = 0; i < in.size(); ++i) to[i] = table[in[i]];
        return {to, in.size()};
    }

private:
    std::string m_table;
};

} // namespace orv::bench
