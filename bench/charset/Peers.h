#pragma once

#include "bench/charset/Conversion.h"

#if __has_include(<iconv.h>)
#include <iconv.h>
#endif
#if __has_include(<unicode/ucnv.h>)
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#endif
#if __has_include(<QStringConverter>)
#include <QStringConverter>
#endif
#if __has_include(<Poco/UnicodeConverter.h>)
#include <Poco/TextConverter.h>
#include <Poco/UTF16Encoding.h>
#include <Poco/UnicodeConverter.h>
#include <Poco/Windows1252Encoding.h>
#endif

#include <codecvt>
#include <locale>

/// \file
/// What a user would take instead of the library's converters. An encoding is named as the peer
/// itself names it; `valid()` says whether it knows it.

namespace orv::bench {

#if __has_include(<iconv.h>)
class IconvDecoder {
public:
    static constexpr const char* name = "iconv";
    explicit IconvDecoder(const char* encoding = "UTF-8")
        : m_iconv(iconv_open("UTF-16LE", encoding))
    {
    }
    IconvDecoder(const IconvDecoder&) = delete;
    IconvDecoder& operator=(const IconvDecoder&) = delete;
    ~IconvDecoder() { iconv_close(m_iconv); }

    bool valid() const { return m_iconv != reinterpret_cast<iconv_t>(-1); }
    Units operator()(Bytes in, std::u16string& out)
    {
        iconv(m_iconv, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(in.data());
        char* to = reinterpret_cast<char*>(out.data());
        std::size_t left = in.size();
        std::size_t room = out.size() * 2;
        iconv(m_iconv, &from, &left, &to, &room);
        return {out.data(), out.size() - room / 2};
    }

private:
    iconv_t m_iconv;
};

class IconvEncoder {
public:
    static constexpr const char* name = "iconv";
    explicit IconvEncoder(const char* encoding = "UTF-8")
        : m_iconv(iconv_open(encoding, "UTF-16LE"))
    {
    }
    IconvEncoder(const IconvEncoder&) = delete;
    IconvEncoder& operator=(const IconvEncoder&) = delete;
    ~IconvEncoder() { iconv_close(m_iconv); }

    bool valid() const { return m_iconv != reinterpret_cast<iconv_t>(-1); }
    Bytes operator()(Units in, std::string& out)
    {
        iconv(m_iconv, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(reinterpret_cast<const char*>(in.data()));
        char* to = out.data();
        std::size_t left = in.size() * 2;
        std::size_t room = out.size();
        iconv(m_iconv, &from, &left, &to, &room);
        return {out.data(), out.size() - room};
    }

private:
    iconv_t m_iconv;
};
#endif

#if __has_include(<unicode/ucnv.h>)
/// ICU's stateful converter.
class IcuConverterDecoder {
public:
    static constexpr const char* name = "icu_ucnv";
    explicit IcuConverterDecoder(const char* encoding = "UTF-8")
        : m_converter(ucnv_open(encoding, &m_error))
    {
    }
    IcuConverterDecoder(const IcuConverterDecoder&) = delete;
    IcuConverterDecoder& operator=(const IcuConverterDecoder&) = delete;
    ~IcuConverterDecoder() { ucnv_close(m_converter); }

    bool valid() const { return U_SUCCESS(m_error); }
    Units operator()(Bytes in, std::u16string& out)
    {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_resetToUnicode(m_converter);
        const char* from = in.data();
        char16_t* to = out.data();
        ucnv_toUnicode(m_converter, &to, out.data() + out.size(), &from, from + in.size(), nullptr,
                       true, &error);
        return {out.data(), static_cast<std::size_t>(to - out.data())};
    }

private:
    UErrorCode m_error = U_ZERO_ERROR;
    UConverter* m_converter;
};

class IcuConverterEncoder {
public:
    static constexpr const char* name = "icu_ucnv";
    explicit IcuConverterEncoder(const char* encoding = "UTF-8")
        : m_converter(ucnv_open(encoding, &m_error))
    {
    }
    IcuConverterEncoder(const IcuConverterEncoder&) = delete;
    IcuConverterEncoder& operator=(const IcuConverterEncoder&) = delete;
    ~IcuConverterEncoder() { ucnv_close(m_converter); }

    bool valid() const { return U_SUCCESS(m_error); }
    Bytes operator()(Units in, std::string& out)
    {
        UErrorCode error = U_ZERO_ERROR;
        ucnv_resetFromUnicode(m_converter);
        const char16_t* from = in.data();
        char* to = out.data();
        ucnv_fromUnicode(m_converter, &to, out.data() + out.size(), &from, from + in.size(),
                         nullptr, true, &error);
        return {out.data(), static_cast<std::size_t>(to - out.data())};
    }

private:
    UErrorCode m_error = U_ZERO_ERROR;
    UConverter* m_converter;
};

/// ICU's functions for UTF-8 alone.
struct IcuDirectDecoder {
    static constexpr const char* name = "icu_direct";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t count = 0;
        u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &count, in.data(),
                      static_cast<std::int32_t>(in.size()), &error);
        return {out.data(), static_cast<std::size_t>(count)};
    }
};

struct IcuDirectEncoder {
    static constexpr const char* name = "icu_direct";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        UErrorCode error = U_ZERO_ERROR;
        std::int32_t count = 0;
        u_strToUTF8(out.data(), static_cast<std::int32_t>(out.size()), &count, in.data(),
                    static_cast<std::int32_t>(in.size()), &error);
        return {out.data(), static_cast<std::size_t>(count)};
    }
};
#endif

#if __has_include(<QStringConverter>)
class QtDecoder {
public:
    static constexpr const char* name = "qt";
    QtDecoder() : m_decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless) {}
    explicit QtDecoder(const char* encoding)
        : m_decoder(encoding, QStringConverter::Flag::Stateless)
    {
    }
    bool valid() const { return m_decoder.isValid(); }
    Units operator()(Bytes in, std::u16string& out)
    {
        auto* const begin = reinterpret_cast<QChar*>(out.data());
        const QChar* const end = m_decoder.appendToBuffer(
            begin, QByteArrayView(in.data(), static_cast<qsizetype>(in.size())));
        return {out.data(), static_cast<std::size_t>(end - begin)};
    }

private:
    QStringDecoder m_decoder;
};

class QtEncoder {
public:
    static constexpr const char* name = "qt";
    QtEncoder() : m_encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless) {}
    explicit QtEncoder(const char* encoding)
        : m_encoder(encoding, QStringConverter::Flag::Stateless)
    {
    }
    bool valid() const { return m_encoder.isValid(); }
    Bytes operator()(Units in, std::string& out)
    {
        const char* const end = m_encoder.appendToBuffer(
            out.data(), QStringView(in.data(), static_cast<qsizetype>(in.size())));
        return {out.data(), static_cast<std::size_t>(end - out.data())};
    }

private:
    QStringEncoder m_encoder;
};
#endif

#if __has_include(<Poco/UnicodeConverter.h>)
/// Fills strings of its own.
class PocoDecoder {
public:
    static constexpr const char* name = "poco";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string&)
    {
        Poco::UnicodeConverter::convert(in.data(), in.size(), m_text);
        return {reinterpret_cast<const char16_t*>(m_text.data()), m_text.size()};
    }

private:
    Poco::UTF16String m_text;
};

class PocoEncoder {
public:
    static constexpr const char* name = "poco";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string&)
    {
        Poco::UnicodeConverter::convert(reinterpret_cast<const Poco::UTF16Char*>(in.data()),
                                        in.size(), m_text);
        return m_text;
    }

private:
    std::string m_text;
};

class PocoCp1252Decoder {
public:
    static constexpr const char* name = "poco";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string&)
    {
        m_text.clear();
        m_converter.convert(in.data(), static_cast<int>(in.size()), m_text);
        return {reinterpret_cast<const char16_t*>(m_text.data()), m_text.size() / 2};
    }

private:
    Poco::Windows1252Encoding m_from;
    Poco::UTF16Encoding m_to;
    Poco::TextConverter m_converter{m_from, m_to};
    std::string m_text;
};

class PocoCp1252Encoder {
public:
    static constexpr const char* name = "poco";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string&)
    {
        m_text.clear();
        m_converter.convert(in.data(), static_cast<int>(in.size() * 2), m_text);
        return m_text;
    }

private:
    Poco::UTF16Encoding m_from;
    Poco::Windows1252Encoding m_to;
    Poco::TextConverter m_converter{m_from, m_to};
    std::string m_text;
};
#endif

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
class CodecvtDecoder {
public:
    static constexpr const char* name = "std_codecvt";
    bool valid() const { return true; }
    Units operator()(Bytes in, std::u16string& out)
    {
        std::mbstate_t state{};
        const char* next;
        char16_t* end;
        m_facet.in(state, in.data(), in.data() + in.size(), next, out.data(),
                   out.data() + out.size(), end);
        return {out.data(), static_cast<std::size_t>(end - out.data())};
    }

private:
    std::codecvt_utf8_utf16<char16_t> m_facet;
};

class CodecvtEncoder {
public:
    static constexpr const char* name = "std_codecvt";
    bool valid() const { return true; }
    Bytes operator()(Units in, std::string& out)
    {
        std::mbstate_t state{};
        const char16_t* next;
        char* end;
        m_facet.out(state, in.data(), in.data() + in.size(), next, out.data(),
                    out.data() + out.size(), end);
        return {out.data(), static_cast<std::size_t>(end - out.data())};
    }

private:
    std::codecvt_utf8_utf16<char16_t> m_facet;
};
#pragma GCC diagnostic pop

} // namespace orv::bench
