#include "orv/crypto/MD5Digest.h"

#include "tests/orv/crypto/Bytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>
#include <utility>

namespace orv::crypto {
namespace {

using test::Bytes;
using test::fromHex;

Bytes ended(MessageDigest& digest)
{
    Bytes out(16);
    digest.getDigest(out.data(), 16);
    return out;
}

Bytes md5(const Bytes& message)
{
    MD5Digest digest;
    digest.update(message.data(), test::sizeOf(message));
    return ended(digest);
}

// The suite of RFC 1321. The last two sums were made by another implementation, Python's hashlib.
TEST(MD5Digest, agreesWithPublishedSumsAtEverySize)
{
    const std::pair<std::string_view, const char*> rows[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const auto& [text, sum] : rows) {
        EXPECT_EQ(md5(Bytes(text.begin(), text.end())), fromHex(sum)) << text;
    }
    MD5Digest all;
    for (std::size_t size = 0; size <= 200; ++size) {
        all.update(md5(test::someBytes(size)).data(), 16);
    }
    EXPECT_EQ(ended(all), fromHex("60076204854e124e40ac09a7b2480f1e"));
    EXPECT_EQ(md5(test::someBytes(1 << 20)), fromHex("4e2a4a492686a08deb26adfb0ebf19de"));
}

TEST(MD5Digest, doesNotCareHowAMessageIsCut)
{
    const Bytes message = test::someBytes(300);
    const Bytes whole = md5(message);
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
    MD5Digest digest;
    const Bytes message = test::someBytes(60);
    digest.update(message.data(), 60);
    Bytes out(17, 42);
    for (const std::int32_t room : {15, 0, -1}) {
        EXPECT_EQ(resultOf([&] { digest.getDigest(out.data(), room); }), E_BUFFER_TOO_SMALL);
    }
    EXPECT_EQ(out, Bytes(17, 42)) << "and the message is kept";
    MD5Digest copy(digest);
    EXPECT_EQ(ended(digest), md5(message));
    EXPECT_EQ(ended(digest), md5({}));
    EXPECT_EQ(ended(copy), md5(message));
    digest.update(message.data(), 60);
    digest.reset();
    digest.getDigest(out.data(), 17);
    EXPECT_EQ(Bytes(out.begin(), out.end() - 1), md5({}));
    EXPECT_EQ(out.back(), 42);
    EXPECT_EQ(digest.getLength(), 16);
    EXPECT_EQ(digest.getName(), u"MD5");
}

TEST(MD5Digest, leavesNothingOfTheMessageBehind)
{
    alignas(MD5Digest) char places[2][sizeof(MD5Digest)];
    auto* const digest = new (places[0]) MD5Digest;
    const MD5Digest* const fresh = new (places[1]) MD5Digest;
    digest->update(test::someBytes(100).data(), 100);
    digest->~MD5Digest();
    EXPECT_EQ(std::memcmp(places[0] + sizeof(Object), places[1] + sizeof(Object),
                          sizeof(MD5Digest) - sizeof(Object)),
              0);
    fresh->~MD5Digest();
}

} // namespace
} // namespace orv::crypto
