#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/crypto/BlowFish.h"

#include <memory>
#include <vector>

namespace tool {
namespace {

using orv::Reference;
using orv::String;
using namespace orv::io;
using orv::crypto::BlowFish;

constexpr std::int32_t BLOCK = 1 << 16; ///< bytes ciphered at a time, whole blocks of the cipher
constexpr std::size_t LONGEST_KEY = 56;

std::int32_t digitOf(char16_t unit)
{
    const char16_t lower = ORVToLowerW(unit);
    if (lower >= u'0' && lower <= u'9') return lower - u'0';
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

std::vector<signed char> keyOf(const String& text)
{
    std::vector<signed char> key;
    bool valid = text.getLength() % 2 == 0;
    for (std::int32_t i = 0; valid && i < text.getLength(); i += 2) {
        const std::int32_t high = digitOf(text[i]);
        const std::int32_t low = digitOf(text[i + 1]);
        valid = high >= 0 && low >= 0;
        key.push_back(static_cast<signed char>(high << 4 | low));
    }
    if (!valid || key.size() > LONGEST_KEY) {
        throw UsageError{u"-key takes 1 to 56 bytes in hexadecimal, two digits each"};
    }
    return key;
}

/// Reads until `bytes` is full or the input ends; returns the bytes read.
std::int32_t fill(InputStream& in, signed char* bytes)
{
    std::int32_t count = 0;
    while (count < BLOCK) {
        const std::int32_t got =
            named(u"cannot read the input", [&] { return in.read(bytes + count, BLOCK - count); });
        if (got < 1) break;
        count += got;
    }
    return count;
}

void runCipher(const Arguments& arguments, PrintWriter&)
{
    const String way = arguments.word(0, u"encrypt or decrypt");
    const bool encrypts = way == u"encrypt";
    if (!encrypts && way != u"decrypt") {
        throw UsageError{u"\"" + way + u"\" is neither encrypt nor decrypt"};
    }
    const std::vector<signed char> key = keyOf(arguments.text(u"key"));
    refuseOneFileForBoth(arguments);
    const Reference<InputStream> in = openInput(arguments);
    const Reference<OutputStream> out = openOutput(arguments);

    const BlowFish cipher(key.data(), static_cast<std::int32_t>(key.size()));
    const auto bytes = std::make_unique<signed char[]>(BLOCK);
    for (std::int32_t count; (count = fill(*in, bytes.get())) > 0;) {
        if (encrypts) {
            cipher.encrypt(bytes.get(), bytes.get(), count);
        } else {
            cipher.decrypt(bytes.get(), bytes.get(), count);
        }
        named(u"cannot write the output", [&] { out->write(bytes.get(), count); });
    }
    named(u"cannot write the output", [&] {
        out->flush();
        out->close();
    });
}

constexpr const char16_t* options[] = {u"key", u"in", u"out"};

} // namespace

const Command cipher = {
    u"cipher",
    u"Blowfish, block by block",
    u" encrypt|decrypt -key=HEX [-in=FILE] [-out=FILE]\n\n"
    u"Without -in and -out it reads standard input and writes standard output. The bytes must be "
    u"a\n"
    u"multiple of 8: there is no padding, as with openssl's bf-ecb and -nopad. Input of another\n"
    u"length fails when its end is seen, and what was written up to there stays.\n\n"
    u"  -key  1 to 56 bytes, two hexadecimal digits each",
    options,
    1,
    &runCipher};

} // namespace tool
