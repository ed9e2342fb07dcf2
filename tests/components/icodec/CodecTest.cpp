#include "orv/text/charset/CodecManager.h"
#include "orv/text/charset/ComConverters.h"
#include "orv/text/charset/EncInfo.h"
#include "tests/orv/text/charset/Converting.h"
#include "tests/support/ScratchRegistry.h"

#include <cerrno>
#include <dlfcn.h>
#include <iconv.h>
#include <span>

static bool refusing = false;

/// The system's, unless a test wants it to know nothing.
extern "C" ORV_API iconv_t iconv_open(const char* to, const char* from)
{
    static void* const original = dlsym(RTLD_NEXT, "iconv_open");
    if (!refusing) return reinterpret_cast<decltype(&iconv_open)>(original)(to, from);
    errno = EINVAL;
    return reinterpret_cast<iconv_t>(-1);
}

namespace orv::text::charset {
namespace {

struct Iconv {
    Iconv(const char* to, const char* from) : handle(iconv_open(to, from)) {}
    ~Iconv() { iconv_close(handle); }
    /// What it makes of all of `in`, nothing and errno where it refuses.
    std::string operator()(std::string_view in) const
    {
        std::string out(16, '\0');
        char *from = const_cast<char*>(in.data()), *to = out.data();
        std::size_t left = in.size(), room = out.size();
        iconv(handle, nullptr, nullptr, nullptr, nullptr);
        if (iconv(handle, &from, &left, &to, &room) != 0) return {};
        if (iconv(handle, nullptr, nullptr, &to, &room) != 0) return {};
        return out.substr(0, out.size() - room);
    }
    iconv_t handle;
};

/// Compares all sequences that begin with `prefix`.
void compareSequences(IORVCharCodec& codec, const Iconv& judge, const std::string& prefix = {})
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::string sequence = prefix + static_cast<char>(byte);
        const auto size = static_cast<std::int32_t>(sequence.size());
        std::int32_t n = size;
        std::uint32_t code = 0xFFFD;
        ASSERT_EQ(codec.BytesToChar(bytesOf(sequence), &n, &code), S_OK);
        if (const auto character = judge(sequence); !character.empty()) {
            const char16_t unit = *reinterpret_cast<const char16_t*>(character.data());
            ASSERT_TRUE(n == size && code == unit) << testing::PrintToString(sequence);
            continue;
        }
        const bool isCut = errno == EINVAL;
        ASSERT_TRUE(code == 0xFFFD && (n == 0 || !isCut)) << testing::PrintToString(sequence);
        if (isCut) compareSequences(codec, judge, sequence);
    }
}

void compareCharacters(IORVCharCodec& codec, const Iconv& judge)
{
    const auto buffer = makeReference<util::RWByteBuffer>();
    for (std::uint32_t code = 0; code < 0x10000; ++code) {
        ASSERT_EQ(codec.CharToBytes(code, buffer.get()), S_OK);
        const std::string bytes(reinterpret_cast<const char*>(buffer->getData()),
                                static_cast<std::size_t>(buffer->getLength()));
        ASSERT_EQ(bytes, judge({reinterpret_cast<char*>(&code), 2})) << code;
    }
}

struct Codecs : testing::Test {
    Codecs() { EXPECT_EQ(test::ScratchRegistry::registerComponent(ORV_ICODEC), S_OK); }

    test::ScratchRegistry registry;
};

TEST_F(Codecs, failWithoutIconvAndRecover)
{
    refusing = true;
    void* made = nullptr;
    const char16_t* const progId = u"Tessaly.CharCodec.CP949";
    EXPECT_EQ(ORVComCreateObjectByProgID(progId, nullptr, IORVCharCodec::IID, &made),
              E_UNKNOWN_ENCODING);
    EXPECT_EQ(CodecManager::getInstance()->getDecoder(u"CP949"), nullptr);
    refusing = false;
    const String text("\xB0\xA1z", 3, u"KS_C_5601-1987");
    EXPECT_EQ(text, u"\uAC00z");
    EXPECT_STREQ(text.getBytes(u"CP949"), "\xB0\xA1z");
}

TEST_F(Codecs, haveTheCharactersOfIconv)
{
    EncInfo infos[28];
    std::uint32_t count = 28;
    ASSERT_EQ(ORVEnumerateEncInfo(&count, infos), S_OK);
    for (const EncInfo& info : std::span(infos).subspan(5)) { // behind the built-in ones
        const std::string name = String(info.name).getBytes(u"ASCII");
        SCOPED_TRACE(name);
        const String progId = String(u"Tessaly.CharCodec.") + info.name;
        void* made = nullptr;
        ORVComCreateObjectByProgID(progId.getData(), nullptr, IORVCharCodec::IID, &made);
        const auto codec = Reference<IORVCharCodec>::adopt(static_cast<IORVCharCodec*>(made));
        ASSERT_TRUE(codec);
        if (name == "CP720") continue; // iconv lacks it
        compareSequences(*codec, Iconv("UTF-16LE", name.c_str()));
        compareCharacters(*codec, Iconv(name.c_str(), "UTF-16LE"));
    }
}

TEST_F(Codecs, findTheTextBehindBrokenCharacters)
{
    using Row = std::tuple<const char16_t*, std::string_view, std::u16string_view, int>;
    for (const auto& [encoding, bytes, units, left] : {
             Row{u"MS932", "\x85@\x85\x9F\x81 \xFFx\x88", u"\uFFFD@\uFFFD\uFFFD \uFFFDx", 1},
             {u"GB2312", "\x80\xA2\xAB\xA2@\x81\x7F\x81\xFF",
              u"\u20AC\uFFFD\uFFFD@\uFFFD\x7F\uFFFD\uFFFD", 0},
             {u"949", "\xAD\xC1\xC7x\xC9\xB0\xA1\x80", u"\uFFFD\uFFFDx\uFFFD\uAC00\uFFFD", 0},
             {u"big5", "\xA3\xFE\xA3\x7F\xA4@\xA4", u"\uFFFD\uFFFD\x7F\u4E00", 1},
             {u"EUC-JP", "\x8F\xA1\xA1\xA4\xA2\x8F\xA2x\x8Fy\xA9\xA1z\x8E\xE5\x8F\xB0",
              u"\uFFFD\u3042\uFFFDx\uFFFDy\uFFFDz\uFFFD", 2},
             {u"WINDOWS-1255", "\xF9\xD1\xFB", u"\u05E9\u05C1\uFFFD",
              0}, // iconv joins the first two
         }) {
        const Reference decoder(ByteToCharConverter::getConverter(encoding));
        for (std::size_t size = 1; size < 20; ++size) { // in pieces of any size
            std::u16string got;
            std::int32_t from = 0;
            for (std::size_t end = size; end < bytes.size() + size; end += size) {
                got += decoded(*decoder, bytes.substr(0, end), from);
            }
            EXPECT_EQ(got, units) << test::readable(encoding) << size;
            EXPECT_EQ(from + left, static_cast<std::int32_t>(bytes.size()));
        }
    }
}

} // namespace
} // namespace orv::text::charset
