#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/CharToByteConverter.h"

#include "bench/charset/Conversion.h"
#include "bench/charset/Limits.h"
#include "bench/charset/Peers.h"
#include "bench/common/Case.h"
#include "bench/common/Corpus.h"
#include "bench/common/Registration.h"

#if __has_include(<QString>)
#include <QString>
#endif
#if __has_include(<unicode/unistr.h>)
#include <unicode/unistr.h>
#endif

// Conversion between bytes and units on buffers of the caller: 1 MiB of bytes a call, and "line40",
// forty characters. Each result is compared with the expected one before it is timed; the rate
// counts the bytes of the byte form.

namespace orv::bench {
namespace {

using text::charset::ByteToCharConverter;
using text::charset::CharToByteConverter;

class OrvDecoder {
public:
    static constexpr const char* name = LIBRARY;
    explicit OrvDecoder(const char16_t* encoding = u"UTF-8")
        : m_decoder(ByteToCharConverter::getConverter(encoding))
    {
    }
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        std::int32_t read = 0;
        std::int32_t written = 0;
        m_decoder->convert(reinterpret_cast<const signed char*>(in.data()), &read,
                           static_cast<std::int32_t>(in.size()), out.data(), &written,
                           static_cast<std::int32_t>(out.size()));
        return {out.data(), static_cast<std::size_t>(written)};
    }

private:
    Reference<ByteToCharConverter> m_decoder;
};

class OrvEncoder {
public:
    static constexpr const char* name = LIBRARY;
    explicit OrvEncoder(const char16_t* encoding = u"UTF-8")
        : m_encoder(CharToByteConverter::getConverter(encoding))
    {
    }
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        std::int32_t read = 0;
        std::int32_t written = 0;
        auto* const to = reinterpret_cast<signed char*>(out.data());
        m_encoder->convert(in.data(), &read, static_cast<std::int32_t>(in.size()), to, &written,
                           static_cast<std::int32_t>(out.size()));
        m_encoder->flush(to, &written, static_cast<std::int32_t>(out.size()));
        return {out.data(), static_cast<std::size_t>(written)};
    }

private:
    Reference<CharToByteConverter> m_encoder;
};

template <class Decoder, class... Arguments>
void addDecoder(const std::string& testCase, Bytes in, Units expected, Arguments... arguments)
{
    addCase(testCase, Decoder::name, [=](benchmark::State& state) {
        Decoder decoder(arguments...);
        std::u16string out(in.size() + 40, u'\0');
        if (!decoder.valid() || decoder(in, out) != expected) {
            return state.SkipWithError("not available, or a wrong result");
        }
        for (auto _ : state) {
            Units units = decoder(in, out);
            benchmark::DoNotOptimize(units);
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
    });
}

template <class Encoder, class... Arguments>
void addEncoder(const std::string& testCase, Units in, Bytes expected, Arguments... arguments)
{
    addCase(testCase, Encoder::name, [=](benchmark::State& state) {
        Encoder encoder(arguments...);
        std::string out(expected.size() + in.size() * 4 + 40, '\0');
        if (!encoder.valid() || encoder(in, out) != expected) {
            return state.SkipWithError("not available, or a wrong result");
        }
        for (auto _ : state) {
            Bytes bytes = encoder(in, out);
            benchmark::DoNotOptimize(bytes);
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(expected.size()));
    });
}

void addUtf8(const std::string& label, Bytes utf8, Units utf16, bool ascii)
{
    const std::string in = "utf8_to_utf16/" + label;
    const std::string out = "utf16_to_utf8/" + label;
    addDecoder<OrvDecoder>(in, utf8, utf16);
    addEncoder<OrvEncoder>(out, utf16, utf8);
#if __has_include(<iconv.h>)
    addDecoder<IconvDecoder>(in, utf8, utf16);
    addEncoder<IconvEncoder>(out, utf16, utf8);
#endif
#if __has_include(<unicode/ucnv.h>)
    addDecoder<IcuConverterDecoder>(in, utf8, utf16);
    addDecoder<IcuDirectDecoder>(in, utf8, utf16);
    addEncoder<IcuConverterEncoder>(out, utf16, utf8);
    addEncoder<IcuDirectEncoder>(out, utf16, utf8);
#endif
#if __has_include(<QStringConverter>)
    addDecoder<QtDecoder>(in, utf8, utf16);
    addEncoder<QtEncoder>(out, utf16, utf8);
#endif
#if __has_include(<Poco/UnicodeConverter.h>)
    addDecoder<PocoDecoder>(in, utf8, utf16);
    addEncoder<PocoEncoder>(out, utf16, utf8);
#endif
    addDecoder<CodecvtDecoder>(in, utf8, utf16);
    addEncoder<CodecvtEncoder>(out, utf16, utf8);
    addDecoder<LoopDecoder>(in, utf8, utf16);
    addEncoder<LoopEncoder>(out, utf16, utf8);
    addDecoder<CopyDecoder>(in, utf8, utf16, utf16);
    addEncoder<CopyEncoder>(out, utf16, utf8, utf8);
#if __has_include(<emmintrin.h>)
    if (!ascii) return;
    addDecoder<WideningDecoder>(in, utf8, utf16);
    addEncoder<NarrowingEncoder>(out, utf16, utf8);
#endif
}

struct SingleByte {
    std::string label;
    const char16_t* orvName;
    const char* iconvName;
    const char* icuName; ///< null where the peers decode the encoding differently
    std::string bytes;
    std::u16string units;
};

void addSingleByte(const SingleByte& row)
{
    const std::string in = row.label + "_to_utf16/text";
    const std::string out = "utf16_to_" + row.label + "/text";
    addDecoder<OrvDecoder>(in, row.bytes, row.units, row.orvName);
    addEncoder<OrvEncoder>(out, row.units, row.bytes, row.orvName);
#if __has_include(<iconv.h>)
    addDecoder<IconvDecoder>(in, row.bytes, row.units, row.iconvName);
    addEncoder<IconvEncoder>(out, row.units, row.bytes, row.iconvName);
#endif
#if __has_include(<unicode/ucnv.h>)
    addDecoder<IcuConverterDecoder>(in, row.bytes, row.units, row.icuName);
    addEncoder<IcuConverterEncoder>(out, row.units, row.bytes, row.icuName);
#endif
#if __has_include(<QStringConverter>)
    addDecoder<QtDecoder>(in, row.bytes, row.units, row.icuName);
    addEncoder<QtEncoder>(out, row.units, row.bytes, row.icuName);
#endif
#if __has_include(<Poco/UnicodeConverter.h>)
    if (row.label == "cp1252") {
        addDecoder<PocoCp1252Decoder>(in, row.bytes, row.units);
        addEncoder<PocoCp1252Encoder>(out, row.units, row.bytes);
    }
#endif
    addDecoder<TableDecoder>(in, row.bytes, row.units, Bytes(row.bytes), Units(row.units));
    addEncoder<TableEncoder>(out, row.units, row.bytes, Units(row.units), Bytes(row.bytes));
}

std::u16string decoded(const char16_t* encoding, const std::string& bytes)
{
    std::u16string out(bytes.size() + 40, u'\0');
    return std::u16string(OrvDecoder(encoding)(bytes, out));
}

std::string encoded(const char16_t* encoding, const std::u16string& units)
{
    std::string out(units.size() * 9 + 40, '\0');
    return std::string(OrvEncoder(encoding)(units, out));
}

void addCodePages()
{
    std::string upper1252 = "\x80\x84\x85\x93\x94\x96\x97";
    std::string upper437;
    std::string upperLatin1;
    for (int i = 0xA0; i < 0x100; ++i) {
        upper1252 += static_cast<char>(i);
        upperLatin1 += static_cast<char>(i);
    }
    for (int i = 0x80; i < 0x100; ++i) {
        // The peers disagree on which of the two letters mu this byte is.
        if (i != 0xE6) upper437 += static_cast<char>(i);
    }
    static SingleByte rows[] = {
        {"cp1252",
         u"CP1252",
         "CP1252",
         "ibm-5348_P100-1997",
         makeSingleByte(MIB, upper1252, 20),
         {}},
        {"cp437", u"CP437", "CP437", "ibm-437", makeSingleByte(MIB, upper437, 20), {}},
    };
    for (SingleByte& row : rows) {
        row.units = decoded(row.orvName, row.bytes);
        addSingleByte(row);
    }

    // Latin-1 is decoded with its sign, as no peer does.
    static const std::string latin1 = makeSingleByte(MIB, upperLatin1, 20);
    static const std::u16string signExtended = decoded(u"ISO8859_1", latin1);
    static const std::u16string latin1Units = [] {
        std::u16string units;
        for (const char byte : latin1) units += static_cast<unsigned char>(byte);
        return units;
    }();
    addDecoder<OrvDecoder>("latin1_to_utf16/text", latin1, signExtended, u"ISO8859_1");
    addDecoder<CopyDecoder>("latin1_to_utf16/text", latin1, signExtended, Units(signExtended));
    addEncoder<OrvEncoder>("utf16_to_latin1/text", latin1Units, latin1, u"ISO8859_1");
    addEncoder<CopyEncoder>("utf16_to_latin1/text", latin1Units, latin1, Bytes(latin1));
#if __has_include(<iconv.h>)
    addEncoder<IconvEncoder>("utf16_to_latin1/text", latin1Units, latin1, "ISO-8859-1");
#endif
#if __has_include(<unicode/ucnv.h>)
    addEncoder<IcuConverterEncoder>("utf16_to_latin1/text", latin1Units, latin1, "ISO-8859-1");
#endif
#if __has_include(<QStringConverter>)
    addEncoder<QtEncoder>("utf16_to_latin1/text", latin1Units, latin1, "ISO-8859-1");
#endif
}

#if __has_include(<iconv.h>)
/// A mebibyte of the characters of a text that an encoding can carry.
std::string carried(const char16_t* encoding, const std::string& corpus)
{
    const auto text = std::find_if(corpora().begin(), corpora().end(),
                                   [&](const Corpus& other) { return other.name == corpus; });
    const Units units = text->utf16;
    const Reference encoder(CharToByteConverter::getConverter(encoding));
    encoder->setSubstitutionBytes(nullptr, 0);
    std::string part(3 * units.size(), '\0');
    std::int32_t from = 0;
    std::int32_t to = 0;
    encoder->convert(units.data(), &from, static_cast<std::int32_t>(units.size()),
                     reinterpret_cast<signed char*>(part.data()), &to,
                     static_cast<std::int32_t>(part.size()));
    part.resize(static_cast<std::size_t>(to));
    std::string bytes;
    while (bytes.size() < MIB) bytes += part;
    return bytes;
}

/// The component over iconv beside iconv itself.
void addExternal()
{
    struct Encoding {
        const char16_t* orvName;
        const char* name;
        const char* corpus;
        std::string bytes;
        std::u16string units;
    };
    static const Registration registration(ORV_ICODEC);
    static Encoding rows[] = {{u"CP1250", "CP1250", "latin1", {}, {}},
                              {u"CP932", "CP932", "cjk", {}, {}},
                              {u"CP936", "CP936", "cjk", {}, {}},
                              {u"EUCJP", "EUC-JP", "cjk", {}, {}}};
    for (Encoding& row : rows) {
        row.bytes = carried(row.orvName, row.corpus);
        row.units = decoded(row.orvName, row.bytes);
        const std::string in = std::string("from_") + row.name + "/" + row.corpus;
        const std::string out = std::string("to_") + row.name + "/" + row.corpus;
        addDecoder<OrvDecoder>(in, row.bytes, row.units, row.orvName);
        addDecoder<IconvDecoder>(in, row.bytes, row.units, row.name);
        addEncoder<OrvEncoder>(out, row.units, row.bytes, row.orvName);
        addEncoder<IconvEncoder>(out, row.units, row.bytes, row.name);
    }
}
#endif

/// UTF-16 and UTF-32 of mixed and of simple text.
void addWide()
{
    struct Encoding {
        const char16_t* orvName;
        const char* name;
    };
    for (const Encoding& each : {Encoding{u"UTF-16LE", "UTF-16LE"},
                                 {u"UTF-16BE", "UTF-16BE"},
                                 {u"UTF-32LE", "UTF-32LE"},
                                 {u"UTF-32BE", "UTF-32BE"}}) {
        for (const Corpus& corpus : corpora()) {
            if (corpus.name != "cjk" && corpus.name != "mixed") continue;
            static std::vector<std::unique_ptr<std::string>> kept;
            kept.push_back(std::make_unique<std::string>(encoded(each.orvName, corpus.utf16)));
            const Bytes bytes = *kept.back();
            const Units units = corpus.utf16;
            const std::string in = std::string("from_") + each.name + "/" + corpus.name;
            const std::string out = std::string("to_") + each.name + "/" + corpus.name;
            addDecoder<OrvDecoder>(in, bytes, units, each.orvName);
            addDecoder<CopyDecoder>(in, bytes, units, units);
            addEncoder<OrvEncoder>(out, units, bytes, each.orvName);
            addEncoder<CopyEncoder>(out, units, bytes, bytes);
#if __has_include(<iconv.h>)
            addDecoder<IconvDecoder>(in, bytes, units, each.name);
            addEncoder<IconvEncoder>(out, units, bytes, each.name);
#endif
#if __has_include(<unicode/ucnv.h>)
            addDecoder<IcuConverterDecoder>(in, bytes, units, each.name);
            addEncoder<IcuConverterEncoder>(out, units, bytes, each.name);
#endif
#if __has_include(<QStringConverter>)
            addDecoder<QtDecoder>(in, bytes, units, each.name);
            addEncoder<QtEncoder>(out, units, bytes, each.name);
#endif
        }
    }
}

/// AMP-7 has no peers: plain runs beside the bounds, and text with an escape for every third
/// letter.
void addAmp7()
{
    for (const Corpus& corpus : corpora()) {
        if (corpus.name != "ascii" && corpus.name != "latin1") continue;
        static std::vector<std::unique_ptr<std::string>> kept;
        kept.push_back(std::make_unique<std::string>(encoded(u"AMP-7", corpus.utf16)));
        const Bytes bytes = *kept.back();
        const Units units = corpus.utf16;
        const std::string in = "amp7_to_utf16/" + corpus.name;
        const std::string out = "utf16_to_amp7/" + corpus.name;
        addDecoder<OrvDecoder>(in, bytes, units, u"AMP-7");
        addDecoder<CopyDecoder>(in, bytes, units, units);
        addEncoder<OrvEncoder>(out, units, bytes, u"AMP-7");
        addEncoder<CopyEncoder>(out, units, bytes, bytes);
    }
}

template <class Body>
void addTimed(const char* testCase, const char* peer, Body body)
{
    addCase(testCase, peer, [body](benchmark::State& state) {
        for (auto _ : state) {
            auto result = body();
            benchmark::DoNotOptimize(result);
        }
    });
}

/// Short text through the string classes: what a call costs that makes a string of forty bytes, and
/// back.
void addStrings()
{
    static const std::string line = corpora()[0].utf8.substr(0, 40);
    static const std::string word = "Gr\xC3\xB6\xC3\x9F"
                                    "e der Datei \xE2\x82\xAC";
    struct Case {
        const char* in;
        const char* out;
        const std::string* text;
    };
    for (const Case& each : {Case{"string_from_utf8/ascii40", "string_to_utf8/ascii40", &line},
                             {"string_from_utf8/latin22", "string_to_utf8/latin22", &word}}) {
        const std::string* const text = each.text;
        const auto size = static_cast<std::int32_t>(text->size());
        addTimed(each.in, LIBRARY, [=] { return String(text->data(), size, u"UTF-8", 0); });
        static const String wide[] = {String(line.data(), -1, u"UTF-8"),
                                      String(word.data(), -1, u"UTF-8")};
        const String* const from = &wide[text == &word];
        addTimed(each.out, LIBRARY, [=] {
            std::array<char, 100> bytes;
            return from->getBytes(bytes.data(), 100, u"UTF-8") + bytes[0];
        });
#if __has_include(<QString>)
        addTimed(each.in, "qt", [=] { return QString::fromUtf8(text->data(), size); });
        addTimed(each.out, "qt",
                 [q = QString::fromUtf8(text->data(), size)] { return q.toUtf8(); });
#endif
#if __has_include(<unicode/unistr.h>)
        addTimed(each.in, "icu", [=] {
            return icu::UnicodeString::fromUTF8({text->data(), size});
        });
        addTimed(each.out, "icu", [u = icu::UnicodeString::fromUTF8({text->data(), size})] {
            std::string bytes;
            u.toUTF8String(bytes);
            return bytes;
        });
#endif
    }
    addTimed("string_from_default/ascii40", LIBRARY, [] { return String(line.data(), 40); });
}

const bool registered = [] {
    for (const Corpus& corpus : corpora()) {
        addUtf8(corpus.name, corpus.utf8, corpus.utf16, corpus.name == "ascii");
    }
    const Corpus& ascii = corpora()[0];
    addUtf8("line40", Bytes(ascii.utf8).substr(0, 40), Units(ascii.utf16).substr(0, 40), true);
    addCodePages();
    addWide();
    addAmp7();
#if __has_include(<iconv.h>)
    addExternal();
#endif
    addStrings();
    return true;
}();

} // namespace
} // namespace orv::bench
