#include "orv/crypto/MD5Digest.h"

#include "orv/Exception.h"
#include "orv/Reference.h"

#include "tests/orv/crypto/Bytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <string>

namespace orv::crypto {
namespace {

using test::Bytes;
using test::bytesOf;
using test::toHex;

std::string ended(MessageDigest& digest)
{
    Bytes out(16);
    digest.getDigest(out.data(), 16);
    return toHex(out);
}

std::string md5(const Bytes& message)
{
    MD5Digest digest;
    digest.update(message.data(), test::sizeOf(message));
    return ended(digest);
}

/// The text of RFC 1321 once more, plain and slow, over a padded copy of the message.
std::string plainMd5(Bytes message)
{
    constexpr unsigned shifts[4][4] = {
        {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};
    const std::uint64_t bits = message.size() * 8;
    message.push_back(static_cast<signed char>(0x80));
    while (message.size() % 64 != 56) message.push_back(0);
    for (unsigned i = 0; i < 8; ++i) message.push_back(static_cast<signed char>(bits >> (8 * i)));

    std::uint32_t state[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    for (std::size_t at = 0; at < message.size(); at += 64) {
        std::uint32_t words[16];
        std::memcpy(words, message.data() + at, 64); // little-endian, as all our machines
        std::uint32_t a = state[0], b = state[1], c = state[2], d = state[3];
        for (unsigned i = 0; i < 64; ++i) {
            const std::uint32_t functions[4] = {(b & c) | (~b & d), (b & d) | (c & ~d), b ^ c ^ d,
                                                c ^ (b | ~d)};
            const unsigned places[4] = {i, 5 * i + 1, 3 * i + 5, 7 * i};
            const auto sine = static_cast<std::uint32_t>(std::fabs(std::sin(i + 1.0)) * 4294967296);
            const std::uint32_t sum = a + functions[i / 16] + words[places[i / 16] % 16] + sine;
            a = d;
            d = c;
            c = b;
            b += std::rotl(sum, static_cast<int>(shifts[i / 16][i % 4]));
        }
        state[0] += a;
        state[1] += b;
        state[2] += c;
        state[3] += d;
    }
    return toHex(reinterpret_cast<const signed char*>(state), 16);
}

TEST(MD5Digest, passesTheSuiteOfItsRfc)
{
    struct Row {
        const char* message;
        const char* digest;
    };
    constexpr Row rows[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"1234567890123456789012345678901234567890"
         "1234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const Row& row : rows) EXPECT_EQ(md5(bytesOf(row.message)), row.digest) << row.message;
}

TEST(MD5Digest, agreesWithThePlainAlgorithmAroundEachBlockBorder)
{
    for (std::size_t size = 0; size <= 200; ++size) {
        const Bytes message = test::someBytes(size);
        EXPECT_EQ(md5(message), plainMd5(message)) << size;
    }
    const Bytes large = test::someBytes(1 << 20);
    EXPECT_EQ(md5(large), plainMd5(large));
}

TEST(MD5Digest, doesNotCareHowAMessageIsCut)
{
    const Bytes message = test::someBytes(300);
    const std::string whole = plainMd5(message);
    for (std::int32_t first = 0; first <= 130; ++first) {
        for (const std::int32_t second : {0, 1, 62, 63, 64, 65, 127, 128}) {
            MD5Digest digest;
            digest.update(message.data(), first);
            digest.update(message.data() + first, second);
            digest.update(message.data(), -1);
            digest.update(message.data() + first + second, 300 - first - second);
            EXPECT_EQ(ended(digest), whole) << first << ", " << second;
        }
    }
}

TEST(MD5Digest, startsAnewAfterEachMessage)
{
    const Reference<MessageDigest> digest = makeReference<MD5Digest>();
    EXPECT_EQ(digest->getLength(), 16);
    EXPECT_EQ(digest->getName(), u"MD5");
    const Bytes message = test::someBytes(70);
    digest->update(message.data(), 70);
    EXPECT_EQ(ended(*digest), plainMd5(message));
    EXPECT_EQ(ended(*digest), plainMd5({}));
    digest->update(message.data(), 70);
    digest->reset();
    EXPECT_EQ(ended(*digest), plainMd5({}));
}

TEST(MD5Digest, keepsTheMessageWhereTheRoomIsTooSmall)
{
    MD5Digest digest;
    const Bytes message = test::someBytes(60);
    digest.update(message.data(), 60);
    Bytes out(17, 42);
    for (const std::int32_t room : {15, 0, -1}) {
        try {
            digest.getDigest(out.data(), room);
            ADD_FAILURE() << room << " was enough";
        } catch (const ResultException& exception) {
            EXPECT_EQ(exception.getResult(), E_BUFFER_TOO_SMALL);
        }
    }
    EXPECT_EQ(out, Bytes(17, 42));

    MD5Digest copy(digest);
    digest.getDigest(out.data(), 17);
    EXPECT_EQ(toHex(out.data(), 16), plainMd5(message));
    EXPECT_EQ(out[16], 42);
    EXPECT_EQ(ended(copy), plainMd5(message));
}

TEST(MD5Digest, leavesNothingOfTheMessageBehind)
{
    alignas(MD5Digest) unsigned char place[sizeof(MD5Digest)];
    alignas(MD5Digest) unsigned char fresh[sizeof(MD5Digest)];
    auto* const digest = new (place) MD5Digest;
    auto* const other = new (fresh) MD5Digest;
    const Bytes message = test::someBytes(100);
    digest->update(message.data(), 100);
    EXPECT_NE(std::memcmp(place + sizeof(Object), fresh + sizeof(Object),
                          sizeof(MD5Digest) - sizeof(Object)),
              0);
    digest->~MD5Digest();
    EXPECT_EQ(std::memcmp(place + sizeof(Object), fresh + sizeof(Object),
                          sizeof(MD5Digest) - sizeof(Object)),
              0);
    other->~MD5Digest();
}

} // namespace
} // namespace orv::crypto
