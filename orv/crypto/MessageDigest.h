#pragma once

#include "orv/Object.h"

#include <cstdint>

namespace orv {
class String;
} // namespace orv

namespace orv::crypto {

/// A one-way digest of a message that arrives in pieces.
///
///     MD5Digest digest;
///     digest.update(head, headLength);
///     digest.update(body, bodyLength);
///     signed char result[16];
///     digest.getDigest(result, sizeof result);   // and ready for the next message
///
/// Threads: one at a time.
class ORV_API MessageDigest : public Object {
public:
    MessageDigest(const MessageDigest& other) = default;
    MessageDigest& operator=(const MessageDigest& other) = default;
    ~MessageDigest() noexcept(false) override;

    /// Adds `length` bytes to the message; a length below 1 adds nothing.
    virtual void update(const signed char* data, std::int32_t length) = 0;

    /// Ends the message, writes getLength() bytes to `digest` and starts the next message. Throws
    /// ResultException with 0x80004009 where the `length` bytes of room are too few; the message
    /// can then still be ended.
    virtual void getDigest(signed char* digest, std::int32_t length) = 0;

    /// Drops the message and starts anew.
    virtual void reset() = 0;

    /// The size of the digest in bytes.
    virtual std::int32_t getLength() const = 0;

    /// The name of the digest.
    virtual String getName() = 0;

protected:
    MessageDigest() = default;
};

} // namespace orv::crypto
