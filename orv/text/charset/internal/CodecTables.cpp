#include "orv/text/charset/internal/CodecTables.h"

namespace orv::text::charset::internal {

namespace {

constexpr const char16_t* noAliases[] = {nullptr};
constexpr const char16_t* asciiAliases[] = {u"ANSI_X3.4-1968",
                                            u"ISO-IR-6",
                                            u"ANSI_X3.4-1986",
                                            u"ISO_646.IRV:1991",
                                            u"ASCII",
                                            u"ISO646-US",
                                            u"US-ASCII",
                                            u"US",
                                            u"IBM367",
                                            u"CP367",
                                            u"CSASCII",
                                            u"646",
                                            u"DEFAULT",
                                            u"ASCII7",
                                            nullptr};
constexpr const char16_t* iso88591Aliases[] = {u"ISO_8859-1:1987",
                                               u"ISO-IR-100",
                                               u"ISO_8859-1",
                                               u"ISO-8859-1",
                                               u"LATIN1",
                                               u"L1",
                                               u"IBM819",
                                               u"CP819",
                                               u"CSISOLATIN1",
                                               u"8859_1",
                                               u"ISO_8859-1:1978",
                                               u"IBM-819",
                                               u"819",
                                               nullptr};
constexpr const char16_t* cp437Aliases[] = {u"IBM437", u"437", u"CSPC8CODEPAGE437", u"IBM-437",
                                            nullptr};
constexpr const char16_t* cp1252Aliases[] = {u"WINDOWS-1252", nullptr};
constexpr const char16_t* utf8Aliases[] = {u"UTF8", u"UTF_8", nullptr};
constexpr const char16_t* amp7Aliases[] = {u"A7", nullptr};
constexpr const char16_t* cp1250Aliases[] = {u"WINDOWS-1250", nullptr};
constexpr const char16_t* cp1251Aliases[] = {u"WINDOWS-1251", nullptr};
constexpr const char16_t* cp1253Aliases[] = {u"WINDOWS-1253", nullptr};
constexpr const char16_t* cp1254Aliases[] = {u"WINDOWS-1254", nullptr};
constexpr const char16_t* cp1255Aliases[] = {u"WINDOWS-1255", nullptr};
constexpr const char16_t* cp1256Aliases[] = {u"WINDOWS-1256", nullptr};
constexpr const char16_t* cp1257Aliases[] = {u"WINDOWS-1257", nullptr};
constexpr const char16_t* cp1258Aliases[] = {u"WINDOWS-1258", nullptr};
constexpr const char16_t* cp932Aliases[] = {u"WINDOWS-31J", u"MS932", nullptr};
constexpr const char16_t* cp936Aliases[] = {u"GB2312", nullptr};
constexpr const char16_t* cp949Aliases[] = {u"KS_C_5601-1987", nullptr};
constexpr const char16_t* cp950Aliases[] = {u"BIG5", nullptr};
constexpr const char16_t* eucjpAliases[] = {u"EUC-JP", u"EUC_JP", nullptr};

constexpr CodecRow builtIn[] = {
    {u"ASCII", 20127, u"orv::text::charset::CTBASCII", u"orv::text::charset::BTCASCII",
     asciiAliases},
    {u"ISO8859_1", 28591, u"orv::text::charset::CTBISO8859_1", u"orv::text::charset::BTCISO8859_1",
     iso88591Aliases},
    {u"CP437", 437, u"orv::text::charset::CTBCP437", u"orv::text::charset::BTCCP437", cp437Aliases},
    {u"CP1252", 1252, u"orv::text::charset::CTBCP1252", u"orv::text::charset::BTCCP1252",
     cp1252Aliases},
    {u"UTF-8", 65001, u"orv::text::charset::CTBUTF8", u"orv::text::charset::BTCUTF8", utf8Aliases},
    {u"UTF-16LE", 0, u"orv::text::charset::CTBUTF16LE", u"orv::text::charset::BTCUTF16LE",
     noAliases},
    {u"UTF-16BE", 0, u"orv::text::charset::CTBUTF16BE", u"orv::text::charset::BTCUTF16BE",
     noAliases},
    {u"UTF-32BE", 0, u"orv::text::charset::CTBUTF32BE", u"orv::text::charset::BTCUTF32BE",
     noAliases},
    {u"UTF-32LE", 0, u"orv::text::charset::CTBUTF32LE", u"orv::text::charset::BTCUTF32LE",
     noAliases},
    {u"AMP-7", 0, u"orv::text::charset::CTBAMP7", u"orv::text::charset::BTCAMP7", amp7Aliases},
};

constexpr CodecRow external[] = {
    {u"CP1250", 1250, nullptr, nullptr, cp1250Aliases},
    {u"CP1251", 1251, nullptr, nullptr, cp1251Aliases},
    {u"CP1253", 1253, nullptr, nullptr, cp1253Aliases},
    {u"CP1254", 1254, nullptr, nullptr, cp1254Aliases},
    {u"CP1255", 1255, nullptr, nullptr, cp1255Aliases},
    {u"CP1256", 1256, nullptr, nullptr, cp1256Aliases},
    {u"CP1257", 1257, nullptr, nullptr, cp1257Aliases},
    {u"CP1258", 1258, nullptr, nullptr, cp1258Aliases},
    {u"CP720", 720, nullptr, nullptr, noAliases},
    {u"CP737", 737, nullptr, nullptr, noAliases},
    {u"CP775", 775, nullptr, nullptr, noAliases},
    {u"CP850", 850, nullptr, nullptr, noAliases},
    {u"CP852", 852, nullptr, nullptr, noAliases},
    {u"CP855", 855, nullptr, nullptr, noAliases},
    {u"CP857", 857, nullptr, nullptr, noAliases},
    {u"CP858", 858, nullptr, nullptr, noAliases},
    {u"CP862", 862, nullptr, nullptr, noAliases},
    {u"CP866", 866, nullptr, nullptr, noAliases},
    {u"CP932", 932, nullptr, nullptr, cp932Aliases},
    {u"CP936", 936, nullptr, nullptr, cp936Aliases},
    {u"CP949", 949, nullptr, nullptr, cp949Aliases},
    {u"CP950", 950, nullptr, nullptr, cp950Aliases},
    {u"EUCJP", 20932, nullptr, nullptr, eucjpAliases},
};

} // namespace

std::span<const CodecRow> builtInCodecs() noexcept
{
    return builtIn;
}

std::span<const CodecRow> externalCodecs() noexcept
{
    return external;
}

} // namespace orv::text::charset::internal
