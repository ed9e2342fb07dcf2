#include "orv/Reference.h"
#include "orv/io/AlphaNumInputStream.h"
#include "orv/io/AlphaNumOutputStream.h"
#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/DataInputStream.h"
#include "orv/io/DataOutputStream.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <sstream>
#include <string>
#include <vector>

#if __has_include(<Poco/Base32Encoder.h>)
#include <Poco/Base32Decoder.h>
#include <Poco/Base32Encoder.h>
#include <Poco/BinaryReader.h>
#include <Poco/BinaryWriter.h>
#endif
#if __has_include(<QDataStream>)
#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#endif

// Numbers, bits and symbols over memory: 1 MiB of bytes on the packed side.

namespace orv::bench {
namespace {

using namespace orv::io;

constexpr std::int32_t SIZE = MIB;
constexpr std::int32_t TEXT_SIZE = SIZE / 5 * 8;
constexpr std::int32_t RECORD = 2 + 4 + 8 + 8; ///< bytes of a record of four numbers
constexpr std::int32_t RECORDS = SIZE / RECORD;

/// Random bytes of which none looks like the end to a reader of small numbers.
const std::vector<signed char>& bytes()
{
    static const std::vector<signed char> all = [] {
        Random random(4);
        std::vector<signed char> made(SIZE);
        for (signed char& byte : made) byte = static_cast<signed char>(random.below(256));
        return made;
    }();
    return all;
}

/// `body` moves SIZE bytes.
template <class Body>
void memoryCase(const char* name, const char* peer, Body body)
{
    addCase(std::string(name) + "/1MiB", peer, [body](benchmark::State& state) {
        bytes();
        for (auto _ : state) body();
        state.SetBytesProcessed(state.iterations() * SIZE);
    });
}

Reference<ByteArrayOutputStream> memoryOut()
{
    return makeReference<ByteArrayOutputStream>(2 * SIZE);
}

Reference<ByteArrayInputStream> memoryIn()
{
    return makeReference<ByteArrayInputStream>(bytes().data(), SIZE);
}

// The library

void encode()
{
    const auto out = makeReference<AlphaNumOutputStream>(memoryOut().get(), nullptr);
    out->write(bytes().data(), SIZE);
    out->flush();
}

void decode()
{
    static const std::vector<signed char> text = [] {
        const auto memory = memoryOut();
        const auto out = makeReference<AlphaNumOutputStream>(memory.get(), nullptr);
        out->write(bytes().data(), SIZE);
        std::vector<signed char> symbols(TEXT_SIZE);
        memory->getBytes(symbols.data(), TEXT_SIZE);
        return symbols;
    }();
    const auto symbols = makeReference<ByteArrayInputStream>(text.data(), TEXT_SIZE);
    const auto in = makeReference<AlphaNumInputStream>(symbols.get(), nullptr);
    signed char block[4096];
    while (in->read(block, sizeof block) > 0) benchmark::ClobberMemory();
}

template <std::int32_t width>
void writeBits()
{
    const auto out = makeReference<BitOutputStream>(memoryOut().get());
    for (std::uint32_t i = 0; i < std::uint32_t{8} * SIZE / width; ++i) {
        out->write(i & ((1U << width) - 1), width);
    }
    out->flush();
}

template <std::int32_t width>
void readBits()
{
    const auto in = makeReference<BitInputStream>(memoryIn().get());
    std::int64_t sum = 0;
    for (std::int32_t i = 0; i < 8 * SIZE / width; ++i) sum += in->read(width);
    benchmark::DoNotOptimize(sum);
}

void writeInts()
{
    const auto out = makeReference<DataOutputStream>(memoryOut().get());
    for (std::int32_t i = 0; i < SIZE / 4; ++i) out->writeInt32(i);
}

void readInts()
{
    const auto in = makeReference<DataInputStream>(memoryIn().get());
    std::int64_t sum = 0;
    for (std::int32_t i = 0; i < SIZE / 4; ++i) sum += in->readInt32();
    benchmark::DoNotOptimize(sum);
}

void writeRecords()
{
    const auto out = makeReference<DataOutputStream>(memoryOut().get());
    for (std::int32_t i = 0; i < RECORDS; ++i) {
        out->writeInt16(static_cast<std::int16_t>(i));
        out->writeInt32(i);
        out->writeInt64(i);
        out->writeDouble(i);
    }
}

void readRecords()
{
    const auto in = makeReference<DataInputStream>(memoryIn().get());
    for (std::int32_t i = 0; i < RECORDS; ++i) {
        benchmark::DoNotOptimize(in->readInt16());
        benchmark::DoNotOptimize(in->readInt32());
        benchmark::DoNotOptimize(in->readInt64());
        benchmark::DoNotOptimize(in->readDouble());
    }
}

void addLibrary()
{
    memoryCase("alphanum_encode", LIBRARY, encode);
    memoryCase("alphanum_decode", LIBRARY, decode);
    memoryCase("write_5_bits", LIBRARY, writeBits<5>);
    memoryCase("write_13_bits", LIBRARY, writeBits<13>);
    memoryCase("read_5_bits", LIBRARY, readBits<5>);
    memoryCase("read_13_bits", LIBRARY, readBits<13>);
    memoryCase("write_int32", LIBRARY, writeInts);
    memoryCase("read_int32", LIBRARY, readInts);
    memoryCase("write_records", LIBRARY, writeRecords);
    memoryCase("read_records", LIBRARY, readRecords);
}

#if __has_include(<Poco/Base32Encoder.h>)

std::string byteString()
{
    return std::string(bytes().begin(), bytes().end());
}

void pocoEncode()
{
    std::ostringstream text;
    Poco::Base32Encoder out(text, false);
    out.write(reinterpret_cast<const char*>(bytes().data()), SIZE);
    out.close();
}

void pocoDecode()
{
    static const std::string text = [] {
        std::ostringstream symbols;
        Poco::Base32Encoder out(symbols, false);
        out << byteString();
        out.close();
        return symbols.str();
    }();
    std::istringstream symbols(text);
    Poco::Base32Decoder in(symbols);
    char block[4096];
    while (in.read(block, sizeof block) || in.gcount() > 0) benchmark::ClobberMemory();
}

void pocoWriteInts()
{
    std::ostringstream memory;
    Poco::BinaryWriter out(memory, Poco::BinaryWriter::NETWORK_BYTE_ORDER);
    for (std::int32_t i = 0; i < SIZE / 4; ++i) out << Poco::Int32{i};
}

void pocoReadInts()
{
    std::istringstream memory(byteString());
    Poco::BinaryReader in(memory, Poco::BinaryReader::NETWORK_BYTE_ORDER);
    std::int64_t sum = 0;
    for (std::int32_t i = 0; i < SIZE / 4; ++i) {
        Poco::Int32 value = 0;
        in >> value;
        sum += value;
    }
    benchmark::DoNotOptimize(sum);
}

#endif

#if __has_include(<QDataStream>)

template <class Body>
void withQtOutput(Body body)
{
    QBuffer memory;
    memory.open(QIODevice::WriteOnly);
    QDataStream out(&memory);
    body(out);
}

template <class Body>
void withQtInput(Body body)
{
    const auto* const data = reinterpret_cast<const char*>(bytes().data());
    QDataStream in(QByteArray(data, SIZE));
    body(in);
}

template <class Value>
Value qtRead(QDataStream& in)
{
    Value value;
    in >> value;
    benchmark::DoNotOptimize(value);
    return value;
}

void qtWriteInts()
{
    withQtOutput([](QDataStream& out) {
        for (std::int32_t i = 0; i < SIZE / 4; ++i) out << i;
    });
}

void qtReadInts()
{
    withQtInput([](QDataStream& in) {
        std::int64_t sum = 0;
        for (std::int32_t i = 0; i < SIZE / 4; ++i) sum += qtRead<qint32>(in);
        benchmark::DoNotOptimize(sum);
    });
}

void qtWriteRecords()
{
    withQtOutput([](QDataStream& out) {
        for (std::int32_t i = 0; i < RECORDS; ++i) {
            out << static_cast<qint16>(i) << i << qint64{i} << static_cast<double>(i);
        }
    });
}

void qtReadRecords()
{
    withQtInput([](QDataStream& in) {
        for (std::int32_t i = 0; i < RECORDS; ++i) {
            qtRead<qint16>(in);
            qtRead<qint32>(in);
            qtRead<qint64>(in);
            qtRead<double>(in);
        }
    });
}

#endif

void addPeers()
{
#if __has_include(<Poco/Base32Encoder.h>)
    memoryCase("alphanum_encode", "poco_base32encoder", pocoEncode);
    memoryCase("alphanum_decode", "poco_base32decoder", pocoDecode);
    memoryCase("write_int32", "poco_binarywriter", pocoWriteInts);
    memoryCase("read_int32", "poco_binaryreader", pocoReadInts);
#endif
#if __has_include(<QDataStream>)
    memoryCase("write_int32", "qt_datastream", qtWriteInts);
    memoryCase("read_int32", "qt_datastream", qtReadInts);
    memoryCase("write_records", "qt_datastream", qtWriteRecords);
    memoryCase("read_records", "qt_datastream", qtReadRecords);
#endif
}

const bool registered = [] {
    addLibrary();
    addPeers();
    return true;
}();

} // namespace
} // namespace orv::bench
