#include "orv/crypto/BlowFish.h"

#include "tests/orv/crypto/Bytes.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orv::crypto {
namespace {

using test::Bytes;
using test::fromHex;

Bytes encrypted(const BlowFish& cipher, const Bytes& plain)
{
    Bytes out(plain.size());
    cipher.encrypt(out.data(), plain.data(), test::sizeOf(plain));
    return out;
}

Bytes decrypted(const BlowFish& cipher, const Bytes& secret)
{
    Bytes out(secret.size());
    cipher.decrypt(out.data(), secret.data(), test::sizeOf(secret));
    return out;
}

struct Vector {
    const char* key;
    const char* plain;
    const char* secret;
};

// Of the vectors that Eric Young published with his implementation, keys of 8 bytes. One of them
// meets nearly every word of the boxes: the key schedule alone takes 521 blocks.
constexpr Vector vectors[] = {
    {"0000000000000000", "0000000000000000", "4ef997456198dd78"},
    {"3000000000000000", "1000000000000001", "7d856f9a613063f2"},
    {"0123456789abcdef", "1111111111111111", "61f9c3802281b096"},
    {"fedcba9876543210", "0123456789abcdef", "0aceab0fc6a0a28d"},
    {"7ca110454a1a6e57", "01a1d6d039776742", "59c68245eb05282b"},
    {"0131d9619dc1376e", "5cd54ca83def57da", "b1b8cc0b250f09a0"},
    {"07a1133e4a0b2686", "0248d43806f67172", "1730e5778bea1da4"},
    {"1c587f1c13924fef", "305532286d6f295a", "55cb3774d13ef201"},
    {"1f1f1f1f0e0e0e0e", "0123456789abcdef", "a790795108ea3cae"},
    {"ffffffffffffffff", "0000000000000000", "f21e9a77b71c49bc"},
};

// Of the same origin: one plain block under the first 1 to 24 bytes of one key.
constexpr const char* longKey = "f0e1d2c3b4a5968778695a4b3c2d1e0f0011223344556677";
constexpr const char* variableLength[] = {
    "f9ad597c49db005e", "e91d21c1d961a6d6", "e9c2b70a1bc65cf3", "be1e639408640f05",
    "b39e44481bdb1e6e", "9457aa83b1928c0d", "8bb77032f960629d", "e87a244e2cc85e82",
    "15750e7a4f4ec577", "122ba70b3ab64ae0", "3a833c9affc537f6", "9409da87a90f6bf2",
    "884f80625060b8b4", "1f85031c19e11968", "79d9373a714ca34f", "93142887ee3be15c",
    "03429e838ce2d14b", "a4299e27469ff67b", "afd5aed1c1bc96a8", "10851c0e3858da9f",
    "e6f51ed79b9db21f", "64a6e14afd36b46f", "80c7d7d45a5479ad", "05044b62fa52d080",
};

TEST(BlowFish, passesThePublishedVectorsBothWays)
{
    for (const Vector& vector : vectors) {
        const BlowFish cipher(fromHex(vector.key).data(), 8);
        EXPECT_EQ(encrypted(cipher, fromHex(vector.plain)), fromHex(vector.secret)) << vector.key;
        EXPECT_EQ(decrypted(cipher, fromHex(vector.secret)), fromHex(vector.plain)) << vector.key;
    }
}

TEST(BlowFish, takesKeysOfAnyLengthAndUsesNoMoreThan56Bytes)
{
    const auto secretOf = [](const Bytes& key, std::int32_t length) {
        return encrypted(BlowFish(key.data(), length), fromHex("fedcba9876543210"));
    };
    std::int32_t length = 0;
    for (const char* secret : variableLength) {
        EXPECT_EQ(secretOf(fromHex(longKey), ++length), fromHex(secret)) << length;
    }
    const Bytes key = test::someBytes(60);
    EXPECT_EQ(secretOf(key, 57), secretOf(key, 56));
    EXPECT_EQ(secretOf(key, 60), secretOf(key, 56));
    EXPECT_NE(secretOf(key, 55), secretOf(key, 56));
}

TEST(BlowFish, withoutAKeyCiphersWithTheDigitsOfPi)
{
    struct Probe : BlowFish {
        using BlowFish::BlowFish;
        using BlowFish::decryptBlock, BlowFish::encryptBlock;
    };
    EXPECT_EQ(BlowFish::s_pbox[0], 0x243F6A88u);
    EXPECT_EQ(BlowFish::s_sbox[3][255], 0x3AC372E6u);
    for (const std::int32_t length : {0, -1}) {
        const Probe cipher(nullptr, length);
        std::uint32_t words[2] = {0x01234567, 0x89ABCDEF};
        cipher.encryptBlock(words[0], words[1]);
        EXPECT_EQ(words[0], 0x738E078Du) << length;
        EXPECT_EQ(words[1], 0x4C8703A6u) << length;
        cipher.decryptBlock(words[0], words[1]);
        EXPECT_EQ(words[0], 0x01234567u) << length;
        EXPECT_EQ(words[1], 0x89ABCDEFu) << length;
    }
}

// Blocks are worked on in groups, so each number of blocks and each overlap has its own way.
TEST(BlowFish, ciphersBlockByBlockWhateverTheLengthAndThePlace)
{
    const BlowFish cipher(test::someBytes(5).data(), 5);
    const Bytes content = test::someBytes(256);
    for (std::int32_t blocks = 0; blocks <= 13; ++blocks) {
        for (const std::ptrdiff_t shift : {0, 1, 8, 24, 31, 32, -1, -8, -24}) {
            Bytes wanted = content;
            Bytes got = content;
            for (std::ptrdiff_t at = 64; at < 64 + blocks * 8; at += 8) {
                cipher.encrypt(wanted.data() + at + shift, wanted.data() + at, 8);
            }
            cipher.encrypt(got.data() + 64 + shift, got.data() + 64, blocks * 8);
            EXPECT_EQ(got, wanted) << blocks << " blocks moved by " << shift;
        }
        const Bytes plain = test::someBytes(static_cast<std::size_t>(blocks) * 8);
        EXPECT_EQ(decrypted(cipher, encrypted(cipher, plain)), plain) << blocks;
    }
}

TEST(BlowFish, refusesBrokenBlocksBeforeItWrites)
{
    const BlowFish cipher(test::someBytes(3).data(), 3);
    const test::Refusal broken(E_FAIL, "only supports 8 byte block boundaries");
    Bytes bytes = test::someBytes(64);
    signed char* const data = bytes.data();
    for (const std::int32_t length : {7, 9, 63, -1, -7}) {
        EXPECT_EQ(test::refusalOf([&] { cipher.encrypt(data, data, length); }), broken) << length;
        EXPECT_EQ(test::refusalOf([&] { cipher.decrypt(data, data, length); }), broken) << length;
    }
    EXPECT_EQ(bytes, test::someBytes(64));
    cipher.encrypt(nullptr, nullptr, 0);
    cipher.decrypt(nullptr, nullptr, -8);
}

TEST(BlowFish, clearsItsKeyWhenItGoes)
{
    alignas(BlowFish) char place[sizeof(BlowFish)];
    const auto* const cipher = new (place) BlowFish(test::someBytes(16).data(), 16);
    cipher->~BlowFish();
    EXPECT_EQ(std::count(place + sizeof(Object), place + sizeof place, 0),
              static_cast<std::ptrdiff_t>(sizeof(BlowFish) - sizeof(Object)));
}

} // namespace
} // namespace orv::crypto
