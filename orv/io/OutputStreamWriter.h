#pragma once

#include "orv/Reference.h"
#include "orv/io/Block.h"
#include "orv/io/OutputStream.h"
#include "orv/io/Writer.h"
#include "orv/text/charset/CharToByteConverter.h"

namespace orv::io {

/// Writes text to a byte stream in an encoding.
///
///     auto bytes = makeReference<FileOutputStream>(path, FileOutputStream::TRUNC);
///     auto text = makeReference<OutputStreamWriter>(bytes.get(), u"UTF-8", 0x2000);
///     text->write(u"Grüße\n");
///     text->flush();
///
/// Bytes stay in the buffer until it is full or flushed. A surrogate pair may come in two writes; a
/// leading surrogate that still waits for its partner makes flush() throw InvalidCharacterException
/// "leading surrogate without trailing".
///
/// Errors: what the encoder throws passes through; the text before the offending unit has gone into
/// the buffer. Where the inner stream fails, what was encoded so far stays in the buffer for the
/// next flush(), and the rest has not been taken. IoException "stream closed" after close(), but
/// for close() itself, which closes the inner stream again.
class ORV_API OutputStreamWriter : public Writer {
public:
    /// Encodes by the named encoding, null being the default one, through a buffer of `size` bytes,
    /// at least 6 and as many as the longest character takes. Throws UnknownEncodingException for a
    /// name that no codec answers to.
    OutputStreamWriter(OutputStream* out, const char16_t* encoding, std::int32_t size);
    OutputStreamWriter(const OutputStreamWriter&) = delete;
    OutputStreamWriter& operator=(const OutputStreamWriter&) = delete;
    /// Drops bytes not yet flushed.
    ~OutputStreamWriter() noexcept(false) override;

    using Writer::write;
    void write(const char16_t* units, std::int32_t n) override;

    void flush() override;
    /// Drops bytes not yet flushed, and closes the inner stream: flush first.
    void close() override;

    /// The canonical name of the encoding.
    virtual const char16_t* getEncodingName();

private:
    void requireOpen() const;
    void encode(const char16_t* units, std::int32_t n);
    void encodeFrom(std::int32_t* pos, const char16_t* units, std::int32_t n);
    void noteEnd(const char16_t* units, std::int32_t pos) noexcept;
    void encodeLeadAgain(char16_t lead);
    void writeOut();
    void grow();

    Reference<OutputStream> m_out;
    Reference<text::charset::CharToByteConverter> m_converter; ///< null once closed
    std::int32_t m_size;
    Block<signed char> m_buffer;
    std::int32_t m_count = 0;
    char16_t m_lead = 0;      ///< a leading surrogate at the end of the last write, else 0
    bool m_keepsLead = false; ///< whether the encoder has not taken m_lead
};

} // namespace orv::io
