#include "Sweep.h"

#include "orv/Exception.h"
#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/StringWriter.h"
#include "orv/log/AsyncProcessor.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/Logger.h"
#include "tests/support/TemporaryFolder.h"

namespace orv::test {

namespace {

using namespace io;

constexpr std::string_view BYTES = "one line\r\nand another one, of more than a block\nlast";
constexpr const char16_t* TEXT = u"one line\nand another one, of more than a block\n";

/// A stream into a small block of memory, which has to grow. Its state is all that has been
/// written, flushed.
template <class Stream>
struct Output {
    Reference<ByteArrayOutputStream> sink = makeReference<ByteArrayOutputStream>(8);
    Reference<Stream> stream;

    std::string state()
    {
        stream->flush();
        return stateOf(sink->toString(u"UTF-8"));
    }
};

Output<BufferedOutputStream> bufferedOut()
{
    Output<BufferedOutputStream> out;
    out.stream = makeReference<BufferedOutputStream>(out.sink.get(), 16);
    for (int half = 0; half < 2; ++half) out.stream->write("begun...", 8);
    return out;
}

Output<OutputStreamWriter> encodingOut()
{
    Output<OutputStreamWriter> out;
    out.stream = makeReference<OutputStreamWriter>(out.sink.get(), u"UTF-8", 16);
    out.stream->write(u"begun", 5);
    return out;
}

void addOutputs(std::vector<Row>& rows)
{
    rows.push_back(row(
        "BufferedOutputStream, write", &bufferedOut,
        [](auto& out) {
            out.stream->write(BYTES.data(), static_cast<std::int32_t>(BYTES.size()));
            out.stream->write(static_cast<signed char>('!'));
        },
        Promise::Partial));
    rows.push_back(row(
        "OutputStreamWriter, write and flush", &encodingOut,
        [](auto& out) {
            out.stream->write(TEXT);
            out.stream->flush();
        },
        Promise::Partial));
    rows.push_back(row(
        "StringWriter, write", [] { return makeReference<StringWriter>(1); },
        [](auto& out) { out->write(TEXT); }));
}

Reference<ByteArrayInputStream> bytesIn()
{
    const auto* const bytes = reinterpret_cast<const signed char*>(BYTES.data());
    return makeReference<ByteArrayInputStream>(bytes, static_cast<std::int32_t>(BYTES.size()));
}

Reference<InputStreamReader> textIn()
{
    return makeReference<InputStreamReader>(bytesIn().get(), u"UTF-8", 16);
}

/// A stream to read from; its state is what it has still to give.
template <class Stream>
struct Input {
    Reference<Stream> stream;
    String line = String();

    std::string state()
    {
        std::string rest;
        for (std::int32_t unit = stream->read(); unit >= 0; unit = stream->read()) {
            rest += static_cast<char>(unit);
        }
        return stateOf(line) + " before " + rest;
    }
};

Input<BufferedReader> linesIn()
{
    return {makeReference<BufferedReader>(textIn().get(), 16)};
}

Input<BufferedInputStream> markedIn()
{
    auto stream = makeReference<BufferedInputStream>(bytesIn().get(), 16);
    stream->skip(4);
    stream->mark(40);
    stream->skip(12);
    return {stream};
}

void addInputs(std::vector<Row>& rows)
{
    rows.push_back(product("BufferedReader", [] { return linesIn(); }));
    rows.push_back(row("grow for a mark", &markedIn, [](auto& in) {
        if (in.stream->read() != 'o') throw Exception();
    }));
    rows.push_back(row("readLine", &linesIn, [](auto& in) { in.stream->readLine(in.line); }));
}

/// A file of its own; its state is the content.
struct File {
    std::unique_ptr<TemporaryFolder> folder = std::make_unique<TemporaryFolder>();
    String path = folder->file(u"file.txt");
    Reference<FileOutputStream> stream = Reference<FileOutputStream>();

    std::string state() const { return folder->read("file.txt"); }
};

File begunFile()
{
    File file;
    file.folder->write("file.txt", "begun");
    return file;
}

void addFiles(std::vector<Row>& rows)
{
    const auto open = [](File& file, std::uint32_t mode) {
        file.stream = makeReference<FileOutputStream>(file.path, mode);
    };
    rows.push_back(row("FileOutputStream, ATEND", &begunFile,
                       [=](File& file) { open(file, FileOutputStream::ATEND); }));
    rows.push_back(row("FileOutputStream, LOCK and KEEPCLOSED", &begunFile, [=](File& file) {
        open(file, FileOutputStream::LOCK | FileOutputStream::KEEPCLOSED);
    }));
    rows.push_back(row("FileOutputStream, APPEND and print", &begunFile, [=](File& file) {
        open(file, FileOutputStream::APPEND);
        const auto writer = makeReference<OutputStreamWriter>(file.stream.get(), u"CP1252", 100);
        writer->write(TEXT);
        writer->flush();
    }));
}

/// A log in memory. Its state is all that is in it when a queue before it has stopped.
struct Log {
    Reference<StringWriter> text = makeReference<StringWriter>(1);
    Reference<log::Logger> logger = log::Logger::create();

    std::string state()
    {
        logger = nullptr;
        return stateOf(text->toString());
    }
};

void addLogs(std::vector<Row>& rows)
{
    for (const bool isQueued : {false, true}) {
        const auto open = [=] {
            Log log;
            Reference<log::ILogProcessor> end = log::BasicLogWriter::create(log.text.get());
            if (isQueued) end = log::AsyncProcessor::create(end.get(), 0);
            log.logger->addProcessor(end.get());
            return log;
        };
        const auto fill = [](Log& log) {
            for (const std::int32_t length : {5, 700}) log.logger->log(1, String(u'x', length));
        };
        rows.push_back(row(isQueued ? "log, queued" : "log", open, fill, Promise::Partial));
    }
}

} // namespace

std::vector<Row> streamRows()
{
    std::vector<Row> rows;
    addOutputs(rows);
    addInputs(rows);
    addFiles(rows);
    addLogs(rows);
    return rows;
}

} // namespace orv::test
