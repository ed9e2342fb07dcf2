#include "orv/crypto/BlowFish.h"
#include "orv/crypto/MD5Digest.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#if __has_include(<Poco/MD5Engine.h>)
#include <Poco/MD5Engine.h>
#endif
#if __has_include(<QCryptographicHash>)
#include <QCryptographicHash>
#endif
#if __has_include(<gcrypt.h>)
#include <gcrypt.h>
#endif
#if __has_include(<nettle/blowfish.h>)
#include <nettle/blowfish.h>
#include <nettle/md5.h>
#endif
#if __has_include(<openssl/evp.h>)
#include <openssl/evp.h>
#include <openssl/md5.h>
#include <openssl/provider.h>
#endif

// MD5 of 64 bytes and of 1 MiB, Blowfish block by block over 1 MiB, and the set-up of its key.

namespace orv::bench {
namespace {

constexpr unsigned char KEY[16] = {1,  35, 69, 103, 137, 171, 205, 239,
                                   16, 50, 84, 118, 152, 186, 220, 254};

const unsigned char* content()
{
    return reinterpret_cast<const unsigned char*>(corpora()[0].utf8.data());
}

const signed char* asSigned(const unsigned char* bytes)
{
    return reinterpret_cast<const signed char*>(bytes);
}

/// `digest` is body(bytes, size, out).
template <class Body>
void md5Case(const char* peer, Body body)
{
    for (const std::size_t size : {std::size_t{64}, MIB}) {
        addCase(size == 64 ? "md5/64B" : "md5/1MiB", peer, [=](benchmark::State& state) {
            unsigned char digest[16];
            for (auto _ : state) {
                body(content(), size, digest);
                benchmark::DoNotOptimize(digest);
            }
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
        });
    }
}

/// `Cipher` is made from the key and has crypt(encrypt, out); one that cannot be had is false.
template <class Cipher>
void cipherCases(const char* peer)
{
    for (const bool encrypt : {true, false}) {
        const char* const way = encrypt ? "blowfish_encrypt/1MiB" : "blowfish_decrypt/1MiB";
        addCase(way, peer, [encrypt](benchmark::State& state) {
            Cipher cipher(encrypt);
            if (!cipher) return state.SkipWithError("not available");
            std::string out(MIB + 16, '\0');
            for (auto _ : state) {
                cipher.crypt(encrypt, reinterpret_cast<unsigned char*>(out.data()));
                benchmark::ClobberMemory();
            }
            state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(MIB));
        });
    }
    addCase("blowfish_key_setup/16B", peer, [](benchmark::State& state) {
        Cipher cipher(true);
        if (!cipher) return state.SkipWithError("not available");
        for (auto _ : state) {
            cipher.setKey(true);
            benchmark::ClobberMemory();
        }
    });
}

// The library

struct Orv {
    explicit Orv(bool) {}
    explicit operator bool() const { return true; }
    void setKey(bool)
    {
        crypto::BlowFish fresh(asSigned(KEY), sizeof KEY);
        benchmark::DoNotOptimize(fresh);
    }
    void crypt(bool encrypt, unsigned char* out)
    {
        auto* const to = reinterpret_cast<signed char*>(out);
        if (encrypt) {
            cipher.encrypt(to, asSigned(content()), MIB);
        } else {
            cipher.decrypt(to, asSigned(content()), MIB);
        }
    }
    crypto::BlowFish cipher{asSigned(KEY), sizeof KEY};
};

const bool library = [] {
    md5Case(LIBRARY, [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        static crypto::MD5Digest digest;
        digest.update(asSigned(bytes), static_cast<std::int32_t>(size));
        digest.getDigest(reinterpret_cast<signed char*>(out), 16);
    });
    cipherCases<Orv>(LIBRARY);
    return true;
}();

#if __has_include(<openssl/evp.h>)
/// The cipher is in the provider of old algorithms, which an installation may lack.
struct OpenSsl {
    explicit OpenSsl(bool encrypt) : context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free)
    {
        static OSSL_PROVIDER* const standard = OSSL_PROVIDER_load(nullptr, "default");
        static OSSL_PROVIDER* const legacy = OSSL_PROVIDER_load(nullptr, "legacy");
        if (standard != nullptr && legacy != nullptr) {
            cipher.reset(EVP_CIPHER_fetch(nullptr, "BF-ECB", nullptr));
        }
        if (cipher) setKey(encrypt);
    }
    explicit operator bool() const { return cipher != nullptr; }
    void setKey(bool encrypt)
    {
        EVP_CipherInit_ex2(context.get(), cipher.get(), KEY, nullptr, encrypt ? 1 : 0, nullptr);
        EVP_CIPHER_CTX_set_padding(context.get(), 0);
    }
    void crypt(bool, unsigned char* out)
    {
        int written = 0;
        EVP_CipherUpdate(context.get(), out, &written, content(), MIB);
    }
    std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context;
    std::unique_ptr<EVP_CIPHER, decltype(&EVP_CIPHER_free)> cipher{nullptr, &EVP_CIPHER_free};
};

const bool openSsl = [] {
    md5Case("openssl_evp", [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        static EVP_MD* const algorithm = EVP_MD_fetch(nullptr, "MD5", nullptr);
        static EVP_MD_CTX* const context = EVP_MD_CTX_new();
        EVP_DigestInit_ex2(context, algorithm, nullptr);
        EVP_DigestUpdate(context, bytes, size);
        EVP_DigestFinal_ex(context, out, nullptr);
    });
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations" // the fastest way to that digest
    md5Case("openssl_direct", [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        MD5_CTX context;
        MD5_Init(&context);
        MD5_Update(&context, bytes, size);
        MD5_Final(out, &context);
    });
#pragma GCC diagnostic pop
    cipherCases<OpenSsl>("openssl");
    return true;
}();
#endif

#if __has_include(<nettle/blowfish.h>)
struct Nettle {
    explicit Nettle(bool encrypt) { setKey(encrypt); }
    explicit operator bool() const { return true; }
    void setKey(bool) { blowfish_set_key(&context, sizeof KEY, KEY); }
    void crypt(bool encrypt, unsigned char* out)
    {
        if (encrypt) {
            blowfish_encrypt(&context, MIB, out, content());
        } else {
            blowfish_decrypt(&context, MIB, out, content());
        }
    }
    blowfish_ctx context{};
};

const bool nettle = [] {
    md5Case("nettle", [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        md5_ctx context;
        md5_init(&context);
        md5_update(&context, size, bytes);
        md5_digest(&context, 16, out);
    });
    cipherCases<Nettle>("nettle");
    return true;
}();
#endif

#if __has_include(<gcrypt.h>)
struct Gcrypt {
    explicit Gcrypt(bool encrypt)
    {
        gcry_check_version(nullptr);
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        gcry_cipher_open(&handle, GCRY_CIPHER_BLOWFISH, GCRY_CIPHER_MODE_ECB, 0);
        setKey(encrypt);
    }
    Gcrypt(const Gcrypt&) = delete;
    Gcrypt& operator=(const Gcrypt&) = delete;
    ~Gcrypt() { gcry_cipher_close(handle); }
    explicit operator bool() const { return handle != nullptr; }
    void setKey(bool) { gcry_cipher_setkey(handle, KEY, sizeof KEY); }
    void crypt(bool encrypt, unsigned char* out)
    {
        if (encrypt) {
            gcry_cipher_encrypt(handle, out, MIB, content(), MIB);
        } else {
            gcry_cipher_decrypt(handle, out, MIB, content(), MIB);
        }
    }
    gcry_cipher_hd_t handle = nullptr;
};

const bool gcrypt = [] {
    cipherCases<Gcrypt>("gcrypt");
    return true;
}();
#endif

#if __has_include(<Poco/MD5Engine.h>)
const bool poco = [] {
    md5Case("poco", [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        static Poco::MD5Engine engine;
        engine.reset();
        engine.update(bytes, size);
        const auto& digest = engine.digest();
        std::copy(digest.begin(), digest.end(), out);
    });
    return true;
}();
#endif

#if __has_include(<QCryptographicHash>)
const bool qt = [] {
    md5Case("qt", [](const unsigned char* bytes, std::size_t size, unsigned char* out) {
        static QCryptographicHash hash(QCryptographicHash::Md5);
        hash.reset();
        hash.addData(
            QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), static_cast<int>(size)));
        const QByteArray digest = hash.result();
        std::copy(digest.begin(), digest.end(), out);
    });
    return true;
}();
#endif

} // namespace
} // namespace orv::bench
