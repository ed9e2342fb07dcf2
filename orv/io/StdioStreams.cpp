#include "orv/io/StdioStreams.h"

#include "orv/io/IoExceptions.h"
#include "platform/console.h"
#include "platform/files.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace orv::io {

namespace {

std::int64_t positionOf(std::FILE* stream)
{
    const long position = std::ftell(stream);
    if (position < 0) throw IoException(u"stream seek error");
    return position;
}

void requireNoReadError(std::FILE* stream)
{
    if (std::ferror(stream) != 0) throw IoException(u"stream read error");
}

void writeByte(std::FILE* stream, signed char byte)
{
    if (stream == nullptr || std::putc(static_cast<unsigned char>(byte), stream) == EOF) {
        throw IoException(u"stream write error");
    }
}

/// Writes past the buffer of the stream.
void writeBlock(std::FILE* stream, const signed char* bytes, std::int32_t n)
{
    if (stream == nullptr) throw IoException(u"stream write error");
    std::int32_t written = 0;
    if (n > 0) {
        const ORVHandle file = orvcore::fileHandleFromStream(stream);
        static_cast<void>(orvcore::writeFile(file, bytes, n, &written));
    }
    if (written < n || std::ferror(stream) != 0) throw IoException(u"stream write error");
}

void flushStream(std::FILE* stream)
{
    if (stream == nullptr || std::fflush(stream) != 0) throw IoException(u"stream flush error");
}

} // namespace

StdioInputStream::~StdioInputStream() noexcept(false) = default;

std::int32_t StdioInputStream::read(signed char* buffer, std::int32_t n)
{
    if (n < 1) return 0;
    auto* const line = reinterpret_cast<char*>(buffer);
    const bool any = std::fgets(line, n, stdin) != nullptr;
    requireNoReadError(stdin);
    const auto length = any ? static_cast<std::int32_t>(std::strlen(line)) : 0;
    return length == 0 ? -1 : length;
}

std::int32_t StdioInputStream::read()
{
    const int byte = std::getc(stdin);
    if (byte != EOF) return byte;
    requireNoReadError(stdin);
    return -1;
}

std::int32_t StdioInputStream::skip(std::int32_t n)
{
    const std::int64_t before = positionOf(stdin);
    if (std::fseek(stdin, n, SEEK_CUR) != 0) throw IoException(u"stream seek error");
    return static_cast<std::int32_t>(positionOf(stdin) - before);
}

StdioOutputStream::~StdioOutputStream() noexcept(false) = default;

void StdioOutputStream::write(const signed char* bytes, std::int32_t n)
{
    writeBlock(stdout, bytes, n);
}

void StdioOutputStream::write(signed char byte)
{
    writeByte(stdout, byte);
}

void StdioOutputStream::flush()
{
    flushStream(stdout);
}

Reference<OutputStream> StdioOutputStream::getStdErrorStream()
{
    return makeReference<StdioFileOutputStream>(stderr, false);
}

StdioFileOutputStream::~StdioFileOutputStream() noexcept(false)
{
    closeOwned();
}

void StdioFileOutputStream::write(const signed char* bytes, std::int32_t n)
{
    writeBlock(m_stream, bytes, n);
}

void StdioFileOutputStream::write(signed char byte)
{
    writeByte(m_stream, byte);
}

void StdioFileOutputStream::flush()
{
    flushStream(m_stream);
}

void StdioFileOutputStream::close()
{
    closeOwned();
}

void StdioFileOutputStream::closeOwned() noexcept
{
    if (std::exchange(m_ownsStream, false)) std::fclose(std::exchange(m_stream, nullptr));
}

} // namespace orv::io
