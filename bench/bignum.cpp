#include "orv/math/BigInteger.h"

#include "orv/String.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>

#if __has_include(<gmp.h>)
#include <gmp.h>
#endif
#if __has_include(<boost/multiprecision/cpp_int.hpp>)
#include <boost/multiprecision/cpp_int.hpp>
#endif
#if __has_include(<openssl/bn.h>)
#include <openssl/bn.h>
#include <openssl/crypto.h>
#endif

// Integers of unbounded size. The library's products are those of its row rule, which loses
// carries; the peers' are exact.

namespace orv::bench {
namespace {

std::string hexNumber(int bits, std::uint64_t seed)
{
    Random random(seed);
    std::string digits;
    for (int i = 0; i < bits / 4; ++i) digits += "0123456789abcdef"[random.below(16)];
    digits[0] = 'f';
    return digits;
}

class Orv {
public:
    static constexpr const char* name = LIBRARY;
    using Text = String;
    static Text text(const std::string& digits)
    {
        const std::u16string units(digits.begin(), digits.end());
        return {units.data(), static_cast<std::int32_t>(units.size())};
    }
    void hex(const std::string& digits) { m_value = math::BigInteger(text(digits), 16); }
    void parse(const Text& digits) { m_value = math::BigInteger(digits, 10); }
    Text print() const { return m_value.toString(10); }
    void setSmall(std::uint32_t n) { m_value = n; }
    void multiply(const Orv& a, const Orv& b)
    {
        m_value = a.m_value;
        m_value.multiply(b.m_value);
    }
    void divide(const Orv& a, const Orv& b)
    {
        m_value = a.m_value;
        m_value.divide(b.m_value, m_rest);
    }
    void add(const Orv& a) { m_value.add(a.m_value); }
    void subtract(const Orv& a) { m_value.subtract(a.m_value); }
    void scaleAdd(std::uint32_t factor, std::uint32_t addend)
    {
        m_value.multiply(factor);
        m_value.add(addend);
    }

private:
    math::BigInteger m_value;
    math::BigInteger m_rest;
};

#if __has_include(<gmp.h>)
class Gmp {
public:
    static constexpr const char* name = "gmp";
    using Text = std::string;
    static Text text(const std::string& digits) { return digits; }
    Gmp() { mpz_init(m_value); }
    ~Gmp() { mpz_clear(m_value); }
    Gmp(const Gmp&) = delete;
    Gmp& operator=(const Gmp&) = delete;
    void hex(const std::string& digits) { mpz_set_str(m_value, digits.c_str(), 16); }
    void parse(const Text& digits) { mpz_set_str(m_value, digits.c_str(), 10); }
    Text print() const
    {
        std::string digits(mpz_sizeinbase(m_value, 10) + 2, '\0');
        mpz_get_str(digits.data(), 10, m_value);
        digits.resize(std::strlen(digits.c_str()));
        return digits;
    }
    void setSmall(unsigned n) { mpz_set_ui(m_value, n); }
    void multiply(const Gmp& a, const Gmp& b) { mpz_mul(m_value, a.m_value, b.m_value); }
    void divide(const Gmp& a, const Gmp& b) { mpz_tdiv_q(m_value, a.m_value, b.m_value); }
    void add(const Gmp& a) { mpz_add(m_value, m_value, a.m_value); }
    void subtract(const Gmp& a) { mpz_sub(m_value, m_value, a.m_value); }
    void scaleAdd(unsigned factor, unsigned addend)
    {
        mpz_mul_ui(m_value, m_value, factor);
        mpz_add_ui(m_value, m_value, addend);
    }

private:
    mpz_t m_value;
};
#endif

#if __has_include(<boost/multiprecision/cpp_int.hpp>)
class Boost {
public:
    static constexpr const char* name = "boost_cpp_int";
    using Text = std::string;
    static Text text(const std::string& digits) { return digits; }
    void hex(const std::string& digits) { m_value = Number("0x" + digits); }
    void parse(const Text& digits) { m_value = Number(digits); }
    Text print() const { return m_value.str(); }
    void setSmall(unsigned n) { m_value = n; }
    void multiply(const Boost& a, const Boost& b)
    {
        boost::multiprecision::multiply(m_value, a.m_value, b.m_value);
    }
    void divide(const Boost& a, const Boost& b) { m_value = a.m_value / b.m_value; }
    void add(const Boost& a) { m_value += a.m_value; }
    void subtract(const Boost& a) { m_value -= a.m_value; }
    void scaleAdd(unsigned factor, unsigned addend)
    {
        m_value *= factor;
        m_value += addend;
    }

private:
    using Number = boost::multiprecision::cpp_int;
    Number m_value;
};
#endif

#if __has_include(<openssl/bn.h>)
class OpenSsl {
public:
    static constexpr const char* name = "openssl_bn";
    using Text = std::string;
    static Text text(const std::string& digits) { return digits; }
    OpenSsl() : m_value(BN_new()) {}
    ~OpenSsl() { BN_free(m_value); }
    OpenSsl(const OpenSsl&) = delete;
    OpenSsl& operator=(const OpenSsl&) = delete;
    void hex(const std::string& digits) { BN_hex2bn(&m_value, digits.c_str()); }
    void parse(const Text& digits) { BN_dec2bn(&m_value, digits.c_str()); }
    Text print() const
    {
        char* const digits = BN_bn2dec(m_value);
        std::string result(digits);
        OPENSSL_free(digits);
        return result;
    }
    void setSmall(unsigned n) { BN_set_word(m_value, n); }
    void multiply(const OpenSsl& a, const OpenSsl& b)
    {
        BN_mul(m_value, a.m_value, b.m_value, context());
    }
    void divide(const OpenSsl& a, const OpenSsl& b)
    {
        BN_div(m_value, nullptr, a.m_value, b.m_value, context());
    }
    void add(const OpenSsl& a) { BN_add(m_value, m_value, a.m_value); }
    void subtract(const OpenSsl& a) { BN_sub(m_value, m_value, a.m_value); }
    void scaleAdd(unsigned factor, unsigned addend)
    {
        BN_mul_word(m_value, factor);
        BN_add_word(m_value, addend);
    }

private:
    static BN_CTX* context()
    {
        static BN_CTX* const context = BN_CTX_new();
        return context;
    }
    BIGNUM* m_value;
};
#endif

template <class Peer>
void addText(const std::string& size, const std::string& digits)
{
    addCase("parse_decimal/" + size, Peer::name, [digits](benchmark::State& state) {
        const auto text = Peer::text(digits);
        Peer number;
        for (auto _ : state) {
            number.parse(text);
            benchmark::DoNotOptimize(number);
        }
    });
    addCase("print_decimal/" + size, Peer::name, [digits](benchmark::State& state) {
        Peer number;
        number.parse(Peer::text(digits));
        if (number.print() != Peer::text(digits)) state.SkipWithError("wrong result");
        for (auto _ : state) {
            auto text = number.print();
            benchmark::DoNotOptimize(text);
        }
    });
}

/// That many random digits, the first one 9.
std::string decimalNumber(int digits, std::uint64_t seed)
{
    Random random(seed);
    std::string text = "9";
    while (static_cast<int>(text.size()) < digits) text += "0123456789"[random.below(10)];
    return text;
}

template <class Peer>
void addSized(int bits)
{
    const std::string size = std::to_string(bits);
    const std::string a = hexNumber(bits, 1);
    const std::string b = hexNumber(bits, 2);
    const std::string wide = hexNumber(bits * 2, 3);
    addCase("multiply/" + size, Peer::name, [=](benchmark::State& state) {
        Peer x, y, product;
        x.hex(a);
        y.hex(b);
        for (auto _ : state) {
            product.multiply(x, y);
            benchmark::DoNotOptimize(product);
        }
    });
    addCase("divide_2n_by_n/" + size, Peer::name, [=](benchmark::State& state) {
        Peer x, y, quotient;
        x.hex(wide);
        y.hex(b);
        for (auto _ : state) {
            quotient.divide(x, y);
            benchmark::DoNotOptimize(quotient);
        }
    });
    addCase("add_then_subtract/" + size, Peer::name, [=](benchmark::State& state) {
        Peer x, y;
        x.hex(a);
        y.hex(b);
        for (auto _ : state) {
            x.add(y);
            benchmark::DoNotOptimize(x);
            x.subtract(y);
            benchmark::DoNotOptimize(x);
        }
    });
    addText<Peer>(size, decimalNumber(bits * 301 / 1000, 4));
}

/// A time stamp as one number: six steps of multiply and add by 100 or 1000, then its digits.
template <class Peer>
void addTimeStamp()
{
    addCase("digits_of_time_stamp/17", Peer::name, [](benchmark::State& state) {
        const auto expected = Peer::text("20261114082228123");
        for (auto _ : state) {
            Peer stamp;
            stamp.setSmall(2026);
            for (const unsigned part : {11u, 14u, 8u, 22u, 28u}) stamp.scaleAdd(100, part);
            stamp.scaleAdd(1000, 123);
            auto text = stamp.print();
            benchmark::DoNotOptimize(text);
            if (!(text == expected)) {
                state.SkipWithError("wrong result");
                break;
            }
        }
    });
}

template <class Peer>
void addNumbers()
{
    for (const int digits : {5, 10, 20}) {
        addText<Peer>(std::to_string(digits) + "_digits", decimalNumber(digits, 5));
    }
    for (const int bits : {256, 1024, 4096}) addSized<Peer>(bits);
    addTimeStamp<Peer>();
}

void addLimits()
{
    addCase("digits_of_time_stamp/17", "limit_64_bit_snprintf", [](benchmark::State& state) {
        for (auto _ : state) {
            std::uint64_t stamp = 2026;
            for (const unsigned part : {11u, 14u, 8u, 22u, 28u}) stamp = stamp * 100 + part;
            stamp = stamp * 1000 + 123;
            benchmark::DoNotOptimize(stamp);
            std::array<char, 32> digits;
            const int count = std::snprintf(digits.data(), digits.size(), "%" PRIu64, stamp);
            std::string text(digits.data(), static_cast<std::size_t>(count));
            benchmark::DoNotOptimize(text);
        }
    });
}

const bool registered = [] {
    addNumbers<Orv>();
#if __has_include(<gmp.h>)
    addNumbers<Gmp>();
#endif
#if __has_include(<boost/multiprecision/cpp_int.hpp>)
    addNumbers<Boost>();
#endif
#if __has_include(<openssl/bn.h>)
    addNumbers<OpenSsl>();
#endif
    addLimits();
    return true;
}();

} // namespace
} // namespace orv::bench
