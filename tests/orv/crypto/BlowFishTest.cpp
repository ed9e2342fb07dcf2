#include "orv/crypto/BlowFish.h"

#include "tests/orv/crypto/Bytes.h"
#include "tests/support/Refusals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

namespace orv::crypto {
namespace {

using test::Bytes;
using test::fromHex;

Bytes encrypted(const BlowFish& cipher, Bytes bytes)
{
    cipher.encrypt(bytes.data(), bytes.data(), test::sizeOf(bytes));
    return bytes;
}

Bytes decrypted(const BlowFish& cipher, Bytes bytes)
{
    cipher.decrypt(bytes.data(), bytes.data(), test::sizeOf(bytes));
    return bytes;
}

// Of the vectors that Eric Young published with his implementation. One of them meets nearly every
// word of the boxes: the key schedule alone takes 521 blocks. Without a key the boxes are the
// digits of pi as they stand.
TEST(BlowFish, passesThePublishedVectorsBothWays)
{
    using Row = std::array<const char*, 3>;
    for (const auto& [key, plain, secret] : {
             Row{"", "0123456789abcdef", "738e078d4c8703a6"},
             {"f0", "fedcba9876543210", "f9ad597c49db005e"},
             {"f0e1d2c3b4", "fedcba9876543210", "b39e44481bdb1e6e"},
             {"f0e1d2c3b4a596", "fedcba9876543210", "8bb77032f960629d"},
             {"f0e1d2c3b4a5968778695a4b3c2d1e0f0011223344556677", "fedcba9876543210",
              "05044b62fa52d080"},
             {"0000000000000000", "0000000000000000", "4ef997456198dd78"},
             {"0123456789abcdef", "1111111111111111", "61f9c3802281b096"},
             {"ffffffffffffffff", "0000000000000000", "f21e9a77b71c49bc"},
         }) {
        const Bytes bytes = fromHex(key);
        const BlowFish cipher(bytes.data(), test::sizeOf(bytes));
        EXPECT_EQ(encrypted(cipher, fromHex(plain)), fromHex(secret)) << key;
        EXPECT_EQ(decrypted(cipher, fromHex(secret)), fromHex(plain)) << key;
    }
    struct Probe : BlowFish {
        using BlowFish::BlowFish, BlowFish::decryptBlock, BlowFish::encryptBlock;
    };
    const Probe cipher(nullptr, -1);
    std::pair<std::uint32_t, std::uint32_t> block(0x01234567, 0x89ABCDEF);
    cipher.encryptBlock(block.first, block.second);
    EXPECT_EQ(block, std::pair(0x738E078Du, 0x4C8703A6u));
    cipher.decryptBlock(block.first, block.second);
    EXPECT_EQ(block, std::pair(0x01234567u, 0x89ABCDEFu));
}

TEST(BlowFish, usesNoMoreThan56BytesOfItsKey)
{
    const Bytes key = test::someBytes(60);
    const auto secretOf = [&](int length) {
        return encrypted(BlowFish(key.data(), length), Bytes(8));
    };
    EXPECT_EQ(secretOf(60), secretOf(56));
    EXPECT_NE(secretOf(55), secretOf(56));
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
