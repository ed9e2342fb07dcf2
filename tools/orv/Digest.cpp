#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/crypto/MD5Digest.h"

#include <memory>

namespace tool {
namespace {

using orv::Reference;
using orv::String;
using orv::io::InputStream;
using orv::io::PrintWriter;

constexpr std::int32_t BLOCK = 1 << 16; ///< bytes read at a time

String inHex(const signed char* bytes, std::int32_t count)
{
    constexpr const char16_t* digits = u"0123456789abcdef";
    String text(2 * count + 1);
    for (std::int32_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text.append(digits[byte >> 4]).append(digits[byte & 0xF]);
    }
    return text;
}

void runDigest(const Arguments& arguments, PrintWriter& out)
{
    const Reference<InputStream> in = openInput(arguments);
    const auto block = std::make_unique<signed char[]>(BLOCK);
    orv::crypto::MD5Digest digest;
    const auto read = [&] { return in->read(block.get(), BLOCK); };
    for (std::int32_t got; (got = named(u"cannot read the input", read)) > 0;) {
        digest.update(block.get(), got);
    }
    signed char result[16];
    digest.getDigest(result, sizeof result);
    out.println(inHex(result, sizeof result));
}

constexpr const char16_t* options[] = {u"in"};

} // namespace

const Command digest = {u"digest",
                        u"the MD5 of a file",
                        u" [-in=FILE]\n\n"
                        u"Prints the MD5 of the bytes in lower-case hexadecimal, as md5sum does in "
                        u"its first column.\nWithout -in it reads standard input.",
                        options,
                        0,
                        &runDigest};

} // namespace tool
