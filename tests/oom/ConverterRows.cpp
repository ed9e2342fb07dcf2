#include "Sweep.h"

#include "orv/text/charset/CharsetExceptions.h"
#include "orv/text/charset/CodecManager.h"
#include "orv/util/ByteBuffers.h"
#include "tests/orv/text/charset/FakeCodec.h"

namespace orv::test {

namespace {

using namespace text::charset;

/// The default and one of each family, by all kinds of names.
constexpr const char16_t* ENCODINGS[] = {nullptr,         u"UTF-8",    u"utf-16le", u"UTF-16BE",
                                         u"UTF-32LE",     u"UTF-32BE", u"A7",       u"ASCII",
                                         u"windows-1252", u"CP437",    u"latin1"};

constexpr const char16_t* TEXT = u"A text, rather long, of which every unit is plain";

std::string name8(const char16_t* name)
{
    return readable(name == nullptr ? u"the default" : name);
}

void addEncoding(std::vector<Row>& rows, const char16_t* name)
{
    rows.push_back(product("bytes and back by " + name8(name), [=] {
        util::RWByteBuffer bytes;
        String(TEXT).getBytes(&bytes, name);
        return String(bytes.getData(), bytes.getLength(), name);
    }));
}

/// Throws, with the name as the description.
void addFailures(std::vector<Row>& rows)
{
    for (const char16_t* name : {u"no such encoding", u"CP932"}) {
        rows.push_back(product("encoding without a codec: " + name8(name), [=] {
            try {
                return String("abc", 3, name);
            } catch (const UnknownEncodingException& exception) {
                return exception.getDescription();
            }
        }));
    }
}

void addCodecs(std::vector<Row>& rows)
{
    const auto codec = makeReference<FakeCodec>();
    rows.push_back(product("decoder over a codec",
                           [=] { return String(BTCCom(codec.get()).getEncodingName()); }));
    const auto registering = [] {
        CodecManager::getInstance()->registerCodec(u"an encoding of the tests",
                                                   u"orv::text::charset::CTBASCII",
                                                   u"orv::text::charset::BTCASCII");
        return String("abc", 3, u"An Encoding of the Tests");
    };
    rows.push_back(product("registerCodec", registering, Promise::OnlyFresh));
}

} // namespace

std::vector<Row> converterRows()
{
    std::vector<Row> rows;
    for (const char16_t* name : ENCODINGS) addEncoding(rows, name);
    addFailures(rows);
    addCodecs(rows);
    return rows;
}

} // namespace orv::test
