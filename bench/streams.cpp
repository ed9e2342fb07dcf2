#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/BufferedWriter.h"
#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"

#include "bench/streams/Files.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <unistd.h>

#if __has_include(<Poco/FileStream.h>)
#include <Poco/FileStream.h>
#endif
#if __has_include(<QFile>)
#include <QFile>
#include <QTextStream>
#endif
#if __has_include(<unicode/ustdio.h>)
#include <unicode/ustdio.h>
#include <unicode/ustring.h>
#endif

// A file of 64 MiB of log text by bytes, blocks, lines and characters, and 16 MiB written.

namespace orv::bench {
namespace {

constexpr std::size_t BLOCK = 4096;

// The library

using namespace orv::io;

constexpr std::int32_t BYTES_AHEAD = 0x8000;
constexpr std::int32_t UNITS_AHEAD = 0x2000;

String orvPath(const std::string& path)
{
    return String(path.c_str(), static_cast<std::int32_t>(path.size()), u"UTF-8");
}

Reference<BufferedInputStream> orvInput()
{
    const auto file = makeReference<FileInputStream>(orvPath(inputFile()));
    return makeReference<BufferedInputStream>(file.get(), BYTES_AHEAD);
}

Reference<BufferedReader> orvReader()
{
    const auto file = makeReference<FileInputStream>(orvPath(inputFile()));
    const auto units = makeReference<InputStreamReader>(file.get(), u"UTF-8", BYTES_AHEAD);
    return makeReference<BufferedReader>(units.get(), UNITS_AHEAD);
}

Reference<FileOutputStream> orvOutput(const std::string& path)
{
    return makeReference<FileOutputStream>(orvPath(path), FileOutputStream::TRUNC);
}

std::int64_t orvBytes()
{
    const Reference<BufferedInputStream> in = orvInput();
    std::int64_t count = 0, sum = 0;
    for (std::int32_t byte; (byte = in->read()) != -1; ++count) sum += byte;
    benchmark::DoNotOptimize(sum);
    return count;
}

std::int64_t orvBlocks()
{
    const Reference<BufferedInputStream> in = orvInput();
    signed char block[BLOCK];
    std::int64_t total = 0;
    for (std::int32_t got; (got = in->read(block, BLOCK)) > 0; total += got) {
        benchmark::ClobberMemory();
    }
    return total;
}

std::int64_t orvLines()
{
    const Reference<BufferedReader> in = orvReader();
    String line;
    std::int64_t total = 0;
    for (std::int32_t length; (length = in->readLine(line)) >= 0;) total += length + 1;
    return total;
}

std::int64_t orvUnits()
{
    const Reference<BufferedReader> in = orvReader();
    std::int64_t count = 0, sum = 0;
    for (std::int32_t unit; (unit = in->read()) != -1; ++count) sum += unit;
    benchmark::DoNotOptimize(sum);
    return count;
}

std::int64_t orvUnitBlocks()
{
    const Reference<BufferedReader> in = orvReader();
    char16_t block[BLOCK];
    std::int64_t total = 0;
    for (std::int32_t got; (got = in->read(block, BLOCK)) > 0; total += got) {
        benchmark::ClobberMemory();
    }
    return total;
}

void orvWriteBytes(const std::string& path)
{
    const auto out = makeReference<BufferedOutputStream>(orvOutput(path).get(), BYTES_AHEAD);
    for (std::int64_t i = 0; i < WRITE_SIZE; ++i) out->write(static_cast<signed char>(i));
    out->flush();
}

void orvWriteBlocks(const std::string& path)
{
    const auto out = makeReference<BufferedOutputStream>(orvOutput(path).get(), 0x10000);
    const char* const block = corpora()[0].utf8.data();
    for (std::int64_t i = 0; i < WRITE_SIZE; i += BLOCK) out->write(block, BLOCK);
    out->flush();
}

void orvWriteLines(const std::string& path)
{
    const auto bytes = orvOutput(path);
    const auto out = makeReference<OutputStreamWriter>(bytes.get(), u"UTF-8", BYTES_AHEAD);
    for (int i = 0; i < 16; ++i) {
        for (const std::u16string& line : unitLines()) {
            out->write(line.data(), static_cast<std::int32_t>(line.size()));
        }
    }
    out->flush();
}

// The standard library, and Poco in its manner

template <class Stream>
std::int64_t streamBytes()
{
    Stream file(inputFile(), std::ios::in | std::ios::binary);
    std::int64_t count = 0, sum = 0;
    for (int byte; (byte = file.get()) != EOF; ++count) sum += byte;
    benchmark::DoNotOptimize(sum);
    return count;
}

template <class Stream>
std::int64_t streamBlocks()
{
    Stream file(inputFile(), std::ios::in | std::ios::binary);
    char block[BLOCK];
    std::int64_t total = 0;
    while (file.read(block, BLOCK) || file.gcount() > 0) {
        total += file.gcount();
        benchmark::ClobberMemory();
    }
    return total;
}

template <class Stream>
std::int64_t streamLines()
{
    Stream file(inputFile(), std::ios::in | std::ios::binary);
    std::string line;
    std::int64_t total = 0;
    while (std::getline(file, line)) total += static_cast<std::int64_t>(line.size()) + 1;
    return total;
}

template <class Stream>
void streamWriteBytes(const std::string& path)
{
    Stream file(path, std::ios::out | std::ios::binary);
    for (std::int64_t i = 0; i < WRITE_SIZE; ++i) file.put(static_cast<char>(i));
}

template <class Stream>
void streamWriteBlocks(const std::string& path)
{
    Stream file(path, std::ios::out | std::ios::binary);
    const char* const block = corpora()[0].utf8.data();
    for (std::int64_t i = 0; i < WRITE_SIZE; i += BLOCK) file.write(block, BLOCK);
}

std::int64_t bufferBytes()
{
    std::ifstream file(inputFile(), std::ios::binary);
    std::streambuf* const buffer = file.rdbuf();
    std::int64_t count = 0, sum = 0;
    for (int byte; (byte = buffer->sbumpc()) != EOF; ++count) sum += byte;
    benchmark::DoNotOptimize(sum);
    return count;
}

void bufferWriteBytes(const std::string& path)
{
    std::ofstream file(path, std::ios::binary);
    std::streambuf* const buffer = file.rdbuf();
    for (std::int64_t i = 0; i < WRITE_SIZE; ++i) buffer->sputc(static_cast<char>(i));
}

// The C library

template <auto get>
std::int64_t stdioBytes()
{
    std::FILE* const file = std::fopen(inputFile().c_str(), "rb");
    std::int64_t count = 0, sum = 0;
    for (int byte; (byte = get(file)) != EOF; ++count) sum += byte;
    benchmark::DoNotOptimize(sum);
    std::fclose(file);
    return count;
}

std::int64_t stdioBlocks()
{
    std::FILE* const file = std::fopen(inputFile().c_str(), "rb");
    char block[BLOCK];
    std::int64_t total = 0;
    for (std::size_t got; (got = std::fread(block, 1, BLOCK, file)) > 0;) {
        total += static_cast<std::int64_t>(got);
        benchmark::ClobberMemory();
    }
    std::fclose(file);
    return total;
}

std::int64_t stdioLines()
{
    std::FILE* const file = std::fopen(inputFile().c_str(), "rb");
    char* line = nullptr;
    std::size_t room = 0;
    std::int64_t total = 0;
    for (ssize_t length; (length = ::getline(&line, &room, file)) > 0;) total += length;
    std::free(line);
    std::fclose(file);
    return total;
}

template <auto put>
void stdioWriteBytes(const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    for (std::int64_t i = 0; i < WRITE_SIZE; ++i) put(static_cast<int>(i & 255), file);
    std::fclose(file);
}

void stdioWriteBlocks(const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    const char* const block = corpora()[0].utf8.data();
    for (std::int64_t i = 0; i < WRITE_SIZE; i += BLOCK) std::fwrite(block, 1, BLOCK, file);
    std::fclose(file);
}

// The system, as a bound

std::int64_t systemBlocks(std::size_t size)
{
    const int file = ::open(inputFile().c_str(), O_RDONLY);
    std::string block(size, '\0');
    std::int64_t total = 0;
    for (ssize_t got; (got = ::read(file, block.data(), size)) > 0; total += got) {
        benchmark::ClobberMemory();
    }
    ::close(file);
    return total;
}

void systemWriteBlocks(const std::string& path)
{
    const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0644);
    const char* const block = corpora()[0].utf8.data();
    for (std::int64_t i = 0; i < WRITE_SIZE; i += 65536) {
        if (::write(file, block, 65536) != 65536) std::abort();
    }
    ::close(file);
}

#if __has_include(<QFile>)

template <class Body>
std::int64_t withQtInput(Body body)
{
    QFile file(QString::fromStdString(inputFile()));
    return file.open(QIODevice::ReadOnly) ? body(file) : 0;
}

template <class Body>
void withQtOutput(const std::string& path, Body body)
{
    QFile file(QString::fromStdString(path));
    if (file.open(QIODevice::WriteOnly)) body(file);
}

std::int64_t qtBytes()
{
    return withQtInput([](QFile& file) {
        std::int64_t count = 0, sum = 0;
        for (char byte; file.getChar(&byte); ++count) sum += byte;
        benchmark::DoNotOptimize(sum);
        return count;
    });
}

std::int64_t qtBlocks()
{
    return withQtInput([](QFile& file) {
        char block[BLOCK];
        std::int64_t total = 0;
        for (qint64 got; (got = file.read(block, BLOCK)) > 0; total += got) {
            benchmark::ClobberMemory();
        }
        return total;
    });
}

std::int64_t qtByteLines()
{
    return withQtInput([](QFile& file) {
        char line[512];
        std::int64_t total = 0;
        for (qint64 length; (length = file.readLine(line, sizeof line)) > 0;) total += length;
        return total;
    });
}

std::int64_t qtLines()
{
    return withQtInput([](QFile& file) {
        QTextStream in(&file);
        QString line;
        std::int64_t total = 0;
        while (in.readLineInto(&line)) total += line.size() + 1;
        return total;
    });
}

std::int64_t qtUnits()
{
    return withQtInput([](QFile& file) {
        QTextStream in(&file);
        std::int64_t total = 0;
        for (QChar unit; !in.atEnd(); ++total) in >> unit;
        return total;
    });
}

std::int64_t qtUnitBlocks()
{
    return withQtInput([](QFile& file) {
        QTextStream in(&file);
        std::int64_t total = 0;
        for (QString block; !(block = in.read(BLOCK)).isEmpty();) total += block.size();
        return total;
    });
}

void qtWriteBytes(const std::string& path)
{
    withQtOutput(path, [](QFile& file) {
        for (std::int64_t i = 0; i < WRITE_SIZE; ++i) file.putChar(static_cast<char>(i));
    });
}

void qtWriteBlocks(const std::string& path)
{
    withQtOutput(path, [](QFile& file) {
        const char* const block = corpora()[0].utf8.data();
        for (std::int64_t i = 0; i < WRITE_SIZE; i += BLOCK) file.write(block, BLOCK);
    });
}

void qtWriteLines(const std::string& path)
{
    static const std::vector<QString> lines = [] {
        std::vector<QString> all;
        for (const std::u16string& line : unitLines()) {
            all.push_back(QString::fromStdU16String(line));
        }
        return all;
    }();
    withQtOutput(path, [](QFile& file) {
        QTextStream out(&file);
        for (int i = 0; i < 16; ++i) {
            for (const QString& line : lines) out << line;
        }
    });
}

#endif

#if __has_include(<unicode/ustdio.h>)

std::int64_t icuLines()
{
    UFILE* const file = u_fopen(inputFile().c_str(), "r", nullptr, "UTF-8");
    char16_t line[512];
    std::int64_t total = 0;
    while (u_fgets(line, 512, file) != nullptr) total += u_strlen(line);
    u_fclose(file);
    return total;
}

std::int64_t icuUnits()
{
    UFILE* const file = u_fopen(inputFile().c_str(), "r", nullptr, "UTF-8");
    std::int64_t total = 0;
    while (u_fgetc(file) != U_EOF) ++total;
    u_fclose(file);
    return total;
}

std::int64_t icuUnitBlocks()
{
    UFILE* const file = u_fopen(inputFile().c_str(), "r", nullptr, "UTF-8");
    char16_t block[BLOCK];
    std::int64_t total = 0;
    for (std::int32_t got; (got = u_file_read(block, BLOCK, file)) > 0;) total += got;
    u_fclose(file);
    return total;
}

void icuWriteLines(const std::string& path)
{
    UFILE* const file = u_fopen(path.c_str(), "w", nullptr, "UTF-8");
    for (int i = 0; i < 16; ++i) {
        for (const std::u16string& line : unitLines()) {
            u_file_write(line.data(), static_cast<std::int32_t>(line.size()), file);
        }
    }
    u_fclose(file);
}

#endif

void addLibrary()
{
    readCase("read_by_1_byte", LIBRARY, orvBytes);
    readCase("read_by_4KiB", LIBRARY, orvBlocks);
    readCase("read_lines_utf16", LIBRARY, orvLines);
    readCase("read_by_1_char_utf16", LIBRARY, orvUnits);
    readCase("read_by_4Ki_chars_utf16", LIBRARY, orvUnitBlocks);
    writeCase("write_by_1_byte", LIBRARY, orvWriteBytes);
    writeCase("write_by_4KiB", LIBRARY, orvWriteBlocks);
    writeCase("write_lines_utf16", LIBRARY, orvWriteLines);
}

template <class In, class Out>
void addStreams(const char* in, const char* out)
{
    readCase("read_by_1_byte", in, streamBytes<In>);
    readCase("read_by_4KiB", in, streamBlocks<In>);
    readCase("read_lines_bytes", in, streamLines<In>);
    writeCase("write_by_1_byte", out, streamWriteBytes<Out>);
    writeCase("write_by_4KiB", out, streamWriteBlocks<Out>);
}

int getcUnlocked(std::FILE* file)
{
    return getc_unlocked(file);
}

int putcUnlocked(int byte, std::FILE* file)
{
    return putc_unlocked(byte, file);
}

void addStandard()
{
    addStreams<std::ifstream, std::ofstream>("std_ifstream", "std_ofstream");
#if __has_include(<Poco/FileStream.h>)
    addStreams<Poco::FileInputStream, Poco::FileOutputStream>("poco_fileinputstream",
                                                              "poco_fileoutputstream");
#endif
    readCase("read_by_1_byte", "std_streambuf_sbumpc", bufferBytes);
    readCase("read_by_1_byte", "stdio_getc", stdioBytes<std::getc>);
    readCase("read_by_1_byte", "stdio_getc_unlocked", stdioBytes<getcUnlocked>);
    readCase("read_by_4KiB", "stdio_fread", stdioBlocks);
    readCase("read_by_4KiB", "posix_read_4K", [] { return systemBlocks(BLOCK); });
    readCase("read_by_4KiB", "limit_read2_64K", [] { return systemBlocks(65536); });
    readCase("read_lines_bytes", "stdio_getline", stdioLines);
    writeCase("write_by_1_byte", "std_streambuf_sputc", bufferWriteBytes);
    writeCase("write_by_1_byte", "stdio_putc", stdioWriteBytes<std::putc>);
    writeCase("write_by_1_byte", "stdio_putc_unlocked", stdioWriteBytes<putcUnlocked>);
    writeCase("write_by_4KiB", "stdio_fwrite", stdioWriteBlocks);
    writeCase("write_by_4KiB", "limit_write2_64K", systemWriteBlocks);
}

void addQtAndIcu()
{
#if __has_include(<QFile>)
    readCase("read_by_1_byte", "qt_qfile_getChar", qtBytes);
    readCase("read_by_4KiB", "qt_qfile_read", qtBlocks);
    readCase("read_lines_bytes", "qt_qfile_readLine", qtByteLines);
    readCase("read_lines_utf16", "qt_textstream_readLine", qtLines);
    readCase("read_by_1_char_utf16", "qt_textstream", qtUnits);
    readCase("read_by_4Ki_chars_utf16", "qt_textstream", qtUnitBlocks);
    writeCase("write_by_1_byte", "qt_qfile_putChar", qtWriteBytes);
    writeCase("write_by_4KiB", "qt_qfile_write", qtWriteBlocks);
    writeCase("write_lines_utf16", "qt_textstream", qtWriteLines);
#endif
#if __has_include(<unicode/ustdio.h>)
    readCase("read_lines_utf16", "icu_ufile_fgets", icuLines);
    readCase("read_by_1_char_utf16", "icu_ufile_fgetc", icuUnits);
    readCase("read_by_4Ki_chars_utf16", "icu_ufile_read", icuUnitBlocks);
    writeCase("write_lines_utf16", "icu_ufile_write", icuWriteLines);
#endif
}

const bool registered = [] {
    // The peers leave their bytes to the kernel, so the library's flush does the same here.
    ::setenv("ORV_FLUSH", "process", 1);
    addLibrary();
    addStandard();
    addQtAndIcu();
    return true;
}();

} // namespace
} // namespace orv::bench
