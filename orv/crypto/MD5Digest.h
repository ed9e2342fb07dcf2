#pragma once

#include "orv/crypto/MessageDigest.h"

namespace orv::crypto {

/// The MD5 digest of RFC 1321: 16 bytes.
///
/// For checksums and the formats that use it; forged messages with a given MD5 can be made, so it
/// proves nothing against an attacker. Messages of any length; the bit count in the padding is
/// modulo 2^64. The destructor leaves nothing of the message in memory. A copy goes on from where
/// the original stands.
class ORV_API MD5Digest : public MessageDigest {
public:
    MD5Digest();
    MD5Digest(const MD5Digest& other) = default;
    MD5Digest& operator=(const MD5Digest& other) = default;
    ~MD5Digest() noexcept(false) override;

    void update(const signed char* data, std::int32_t length) override;
    void getDigest(signed char* digest, std::int32_t length) override;
    void reset() override;
    /// 16.
    std::int32_t getLength() const override;
    /// "MD5".
    String getName() override;

private:
    std::int32_t pending() const noexcept;
    void pad() noexcept;
    void start() noexcept;
    void transform(const signed char* block) noexcept;

    std::uint64_t m_bits;      ///< hashed and waiting
    std::uint32_t m_state[4];  ///< A, B, C and D
    signed char m_block[64];   ///< input waiting for a full block
    signed char m_scratch[16]; ///< cleared with the block
};

} // namespace orv::crypto
