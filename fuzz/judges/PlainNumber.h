#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace orv::math {

/// The judge of BigInteger: the same operations byte by byte and bit by bit, slow and plain.
struct PlainNumber {
    using Bytes = std::vector<unsigned char>;

    bool negative = false;
    Bytes bytes; ///< the least significant first; zeros on top count as part of the number

    bool operator==(const PlainNumber&) const = default;

    unsigned at(std::size_t i) const { return i < bytes.size() ? bytes[i] : 0; }

    int bitCount() const
    {
        if (bytes.empty()) return 0;
        int bits = 8 * static_cast<int>(bytes.size() - 1);
        for (unsigned top = bytes.back(); top != 0; top >>= 1) ++bits;
        return bits;
    }

    void trim()
    {
        while (!bytes.empty() && bytes.back() == 0) bytes.pop_back();
    }

    int compareMagnitude(const PlainNumber& other) const
    {
        if (bitCount() != other.bitCount()) return bitCount() < other.bitCount() ? -1 : 1;
        for (std::size_t i = std::max(bytes.size(), other.bytes.size()); i-- > 0;) {
            if (at(i) != other.at(i)) return at(i) < other.at(i) ? -1 : 1;
        }
        return 0;
    }

    int compareTo(const PlainNumber& other) const
    {
        if (negative != other.negative) return negative ? -1 : 1;
        return negative ? -compareMagnitude(other) : compareMagnitude(other);
    }

    void add(PlainNumber other)
    {
        if (negative != other.negative) {
            other.negative = negative;
            subtract(other);
            return;
        }
        const std::size_t size =
            static_cast<std::size_t>(std::max(bitCount(), other.bitCount()) + 9) / 8;
        Bytes sum(std::max(size, other.bytes.size()));
        unsigned carry = 0;
        for (std::size_t i = 0; i < sum.size(); ++i) {
            carry += at(i) + other.at(i);
            sum[i] = static_cast<unsigned char>(carry);
            carry >>= 8;
        }
        bytes = sum;
        trim();
    }

    void subtract(PlainNumber other)
    {
        if (negative != other.negative) {
            other.negative = negative;
            add(other);
            return;
        }
        const int order = compareMagnitude(other);
        if (order == 0) {
            *this = {};
            return;
        }
        if (order < 0) {
            negative = !negative;
            std::swap(bytes, other.bytes);
        }
        Bytes difference(std::max(bytes.size(), other.bytes.size()));
        for (std::size_t i = 0; i < difference.size(); ++i) {
            unsigned minuend = at(i);
            if (minuend < other.at(i) && i + 1 < bytes.size()) {
                std::size_t j = i + 1;
                while (j < bytes.size() && bytes[j] == 0) bytes[j++] = 255;
                if (j < bytes.size()) --bytes[j];
                minuend += 256;
            }
            difference[i] = static_cast<unsigned char>(minuend - other.at(i));
        }
        bytes = difference;
        trim();
    }

    void multiply(const PlainNumber& other)
    {
        Bytes result(2 *
                     (static_cast<std::size_t>(std::max(bitCount(), other.bitCount()) + 9) / 8));
        unsigned sumCarry = 0;
        unsigned mulCarry = 0;
        std::size_t last = 0;
        for (std::size_t i = 0; i < other.bytes.size(); ++i) {
            mulCarry = 0;
            for (std::size_t j = 0; j < bytes.size(); ++j) {
                const unsigned t = unsigned{bytes[j]} * other.bytes[i] + mulCarry;
                mulCarry = t >> 8;
                const unsigned u = sumCarry + (t & 255) + result[i + j];
                result[i + j] = static_cast<unsigned char>(u);
                sumCarry = u >> 8;
                last = i + j;
            }
            result[i + bytes.size()] = static_cast<unsigned char>(mulCarry);
        }
        if (sumCarry != 0) {
            sumCarry += mulCarry;
            result[last + 1] = static_cast<unsigned char>(sumCarry);
            if (sumCarry > 255) result[last + 2] = static_cast<unsigned char>(sumCarry >> 8);
        }
        negative = negative != other.negative;
        bytes = result;
        trim();
    }

    void setBit(int n)
    {
        const auto index = static_cast<std::size_t>(n / 8);
        if (index >= bytes.size()) bytes.resize(index + 1);
        bytes[index] = static_cast<unsigned char>(bytes[index] | 1u << n % 8);
    }

    /// `other` is not 0.
    void divide(const PlainNumber& other, PlainNumber& remainder)
    {
        const bool sign = negative != other.negative;
        PlainNumber a{false, bytes};
        const PlainNumber b{false, other.bytes};
        PlainNumber q;
        const int order = a.compareMagnitude(b);
        if (order == 0) {
            a = {};
            q.bytes = {1};
        }
        while (a.compareMagnitude(b) >= 0) {
            int shift = a.bitCount() - b.bitCount();
            PlainNumber r;
            for (;; --shift) {
                PlainNumber t;
                t.setBit(shift);
                t.multiply(b);
                r = a;
                r.subtract(t);
                if (!r.negative) break;
            }
            q.setBit(shift);
            a = r;
        }
        remainder = a;
        q.negative = sign && order >= 0;
        *this = q;
    }

    static PlainNumber of(std::uint32_t value)
    {
        PlainNumber result;
        for (; value != 0; value >>= 8) result.bytes.push_back(static_cast<unsigned char>(value));
        return result;
    }

    /// The number that the lower-case digits of `text` stand for.
    static PlainNumber read(const std::string& text, unsigned radix)
    {
        PlainNumber result{text[0] == '-', {}};
        for (std::size_t i = result.negative ? 1 : 0; i < text.size(); ++i) {
            const auto unit = static_cast<unsigned char>(text[i]);
            unsigned carry = unit <= '9' ? unit - unsigned{'0'} : unit - unsigned{'a'} + 10;
            for (unsigned char& byte : result.bytes) {
                carry += byte * radix;
                byte = static_cast<unsigned char>(carry);
                carry >>= 8;
            }
            if (carry != 0) result.bytes.push_back(static_cast<unsigned char>(carry));
        }
        return result;
    }

    std::string toString(unsigned radix) const
    {
        if (bytes.empty()) return "0";
        std::string text;
        PlainNumber rest{false, bytes};
        for (;;) {
            PlainNumber group;
            rest.divide(of(radix * radix * radix), group);
            unsigned value = group.at(0) | group.at(1) << 8 | group.at(2) << 16;
            std::string digits;
            do {
                digits.insert(0, 1, "0123456789abcdefghijklmnopqrstuvwxyz"[value % radix]);
                value /= radix;
            } while (value != 0);
            text.insert(0, digits);
            if (rest.bytes.empty()) break;
            text.insert(0, 3 - std::min<std::size_t>(digits.size(), 3), '0');
        }
        return negative ? "-" + text : text;
    }
};

inline std::ostream& operator<<(std::ostream& out, const PlainNumber& number)
{
    static constexpr char digits[] = "0123456789abcdef";
    out << (number.negative ? "-" : "+");
    for (std::size_t i = number.bytes.size(); i-- > 0;) {
        out << digits[number.bytes[i] >> 4] << digits[number.bytes[i] & 15];
    }
    return out;
}

} // namespace orv::math
