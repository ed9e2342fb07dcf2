#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv::crypto {

/// The Blowfish block cipher (Schneier 1993), 16 rounds on blocks of 8 bytes, each block by itself
/// (electronic code book).
///
///     const BlowFish cipher(key, 16);
///     cipher.encrypt(bytes, bytes, 64);   // in place
///     cipher.decrypt(bytes, bytes, 64);
///
/// There is no chaining, no initialisation vector and no padding: equal blocks give equal blocks,
/// and callers pad as their format wants it. For data that must stay secret against an attacker of
/// today, choose a cipher of today; this one is for the formats that use it.
///
/// The key belongs to the object for its life. Copies carry it too. The destructor clears it.
///
/// Threads: any number may encrypt and decrypt with one object at the same time.
class ORV_API BlowFish : public Object {
public:
    /// Prepares the sub-keys from the first 56 of `length` bytes. A `length` below 1 leaves the
    /// tables without a key.
    BlowFish(const signed char* key, std::int32_t length);
    BlowFish(const BlowFish& other) = default;
    BlowFish& operator=(const BlowFish& other) = default;
    ~BlowFish() noexcept(false) override;

    /// Enciphers `length` bytes block by block, the first block first. `destination` may be
    /// `source`. A length that is no multiple of 8 throws Exception "only supports 8 byte block
    /// boundaries" before anything is written; 0 and negative multiples do nothing.
    void encrypt(signed char* destination, const signed char* source, std::int32_t length) const;

    /// The way back, under the same terms.
    void decrypt(signed char* destination, const signed char* source, std::int32_t length) const;

    /// The tables before a key is put in: the fraction of pi in words of 32 bits.
    static const std::uint32_t s_pbox[18];
    static const std::uint32_t s_sbox[4][256];

protected:
    /// Enciphers one block of two words, the left one being the first four bytes, big-endian.
    void encryptBlock(std::uint32_t& left, std::uint32_t& right) const;
    /// The way back.
    void decryptBlock(std::uint32_t& left, std::uint32_t& right) const;

private:
    struct Schedule {
        std::uint32_t p[18];
        std::uint32_t s[4][256];
    };

    template <bool forward, int lanes>
    static void crypt(const Schedule& key, std::uint32_t (&left)[lanes],
                      std::uint32_t (&right)[lanes]);
    template <bool forward, int lanes>
    static void cryptBytes(const Schedule& key, signed char* destination,
                           const signed char* source);
    template <bool forward>
    static void cryptAll(const Schedule& key, signed char* destination, const signed char* source,
                         std::int32_t length);

    Schedule m_key;
};

} // namespace orv::crypto
