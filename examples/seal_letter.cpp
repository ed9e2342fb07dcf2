// Enciphers a letter under a pass phrase and opens it again; a digest of the text tells whether the
// phrase was right.

#include <orv/Reference>
#include <orv/String>
#include <orv/crypto/BlowFish>
#include <orv/crypto/MD5Digest>

#include <cstdio>
#include <cstring>
#include <vector>

using namespace orv;
using crypto::BlowFish;
using crypto::MD5Digest;

namespace {

using Bytes = std::vector<signed char>;

constexpr std::size_t BLOCK = 8;
constexpr std::size_t DIGEST = 16;

Bytes digestOf(const signed char* bytes, std::size_t length)
{
    Bytes digest(DIGEST);
    MD5Digest md5;
    md5.update(bytes, static_cast<std::int32_t>(length));
    md5.getDigest(digest.data(), static_cast<std::int32_t>(digest.size()));
    return digest;
}

/// The pass phrase is hashed, so that all of it counts whatever its length.
BlowFish cipherFor(const char* phrase)
{
    const Bytes key = digestOf(reinterpret_cast<const signed char*>(phrase), std::strlen(phrase));
    return BlowFish(key.data(), static_cast<std::int32_t>(key.size()));
}

/// Digest, text and as many bytes as the last block lacks, each the number of them; enciphered.
Bytes seal(const BlowFish& cipher, const char* text)
{
    const auto* const bytes = reinterpret_cast<const signed char*>(text);
    Bytes sealed = digestOf(bytes, std::strlen(text));
    sealed.insert(sealed.end(), bytes, bytes + std::strlen(text));
    const std::size_t padding = BLOCK - sealed.size() % BLOCK;
    sealed.insert(sealed.end(), padding, static_cast<signed char>(padding));
    cipher.encrypt(sealed.data(), sealed.data(), static_cast<std::int32_t>(sealed.size()));
    return sealed;
}

void open(const BlowFish& cipher, Bytes sealed)
{
    cipher.decrypt(sealed.data(), sealed.data(), static_cast<std::int32_t>(sealed.size()));
    const auto padding = std::size_t{static_cast<unsigned char>(sealed.back())};
    const std::size_t length = padding <= BLOCK ? sealed.size() - padding : sealed.size();
    const signed char* const text = sealed.data() + DIGEST;
    const Bytes digest = digestOf(text, length - DIGEST);
    if (!std::equal(digest.begin(), digest.end(), sealed.begin())) {
        std::printf("not the phrase\n");
        return;
    }
    std::printf("%.*s\n", static_cast<int>(length - DIGEST), reinterpret_cast<const char*>(text));
}

} // namespace

int main()
{
    const BlowFish cipher = cipherFor("correct horse battery staple");
    const Bytes sealed = seal(cipher, "Meet me at the old mill.");
    std::printf("%zu bytes:", sealed.size());
    for (const signed char byte : sealed) std::printf(" %02x", static_cast<unsigned char>(byte));
    std::printf("\n");
    open(cipherFor("correct horse battery stapler"), sealed);
    open(cipher, sealed);
    return 0;
}
