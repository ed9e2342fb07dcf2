#include "Sweep.h"

#include "orv/io/BufferedInputStream.h"
#include "orv/io/BufferedOutputStream.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/BufferedWriter.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"
#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/io/PrintWriter.h"
#include "orv/io/StringWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <array>

namespace orv::test {

namespace {

using namespace io;

constexpr std::string_view BYTES = "one line\r\nand another one, of more than a block\nlast";
constexpr const char16_t* TEXT = u"one line\nand another one, of more than a block\n";

const signed char* signedBytes(std::string_view bytes)
{
    return reinterpret_cast<const signed char*>(bytes.data());
}

std::string contentOf(const ByteArrayOutputStream& stream)
{
    std::vector<signed char> bytes(1000);
    const std::int32_t n = stream.getBytes(bytes.data(), 1000);
    return std::string(bytes.begin(), bytes.begin() + n);
}

/// A stream into a small block of memory, which has to grow. Its state is all that has been
/// written, flushed.
template <class Stream>
struct Output {
    Reference<ByteArrayOutputStream> sink = makeReference<ByteArrayOutputStream>(8);
    Reference<Stream> stream;

    std::string state()
    {
        stream->flush();
        return contentOf(*sink);
    }
};

Output<ByteArrayOutputStream> bytesOut()
{
    Output<ByteArrayOutputStream> out;
    out.stream = out.sink;
    out.stream->write(signedBytes("begun..."), 8);
    return out;
}

Output<BufferedOutputStream> bufferedOut()
{
    Output<BufferedOutputStream> out;
    out.stream = makeReference<BufferedOutputStream>(out.sink.get(), 16);
    for (int half = 0; half < 2; ++half) out.stream->write(signedBytes("begun..."), 8);
    return out;
}

Output<OutputStreamWriter> encodingOut()
{
    Output<OutputStreamWriter> out;
    out.stream = makeReference<OutputStreamWriter>(out.sink.get(), u"UTF-8", 16);
    out.stream->write(u"begun", 5);
    return out;
}

Output<BufferedWriter> bufferedWriter()
{
    Output<BufferedWriter> out;
    const auto inner = makeReference<OutputStreamWriter>(out.sink.get(), u"UTF-8", 16);
    out.stream = makeReference<BufferedWriter>(inner.get(), 16);
    out.stream->write(u"begun", 5);
    return out;
}

/// A PrintWriter over a StringWriter.
struct Printing {
    Reference<StringWriter> text = makeReference<StringWriter>(1);
    Reference<PrintWriter> stream = makeReference<PrintWriter>(text.get(), true);

    std::string state() const { return stateOf(text->toString()); }
};

template <class Bytes>
Row writing(const char* name, Bytes make)
{
    return row(name, make, [](auto& out) {
        out.stream->write(signedBytes(BYTES), static_cast<std::int32_t>(BYTES.size()));
        out.stream->write(static_cast<signed char>('!'));
    });
}

void addOutputs(std::vector<Row>& rows)
{
    rows.push_back(partial(writing("ByteArrayOutputStream, write", &bytesOut)));
    rows.push_back(partial(writing("BufferedOutputStream, write", &bufferedOut)));
    rows.push_back(partial(row("OutputStreamWriter, write", &encodingOut,
                               [](auto& out) { out.stream->write(TEXT); })));
    rows.push_back(partial(row("OutputStreamWriter, flush", &encodingOut, [](auto& out) {
        out.stream->write(u"now, and more of it");
        out.stream->flush();
    })));
    rows.push_back(partial(
        row("BufferedWriter, write", &bufferedWriter, [](auto& out) { out.stream->write(TEXT); })));
    rows.push_back(row(
        "StringWriter, write", [] { return Printing(); },
        [](Printing& out) { out.text->write(TEXT); }));

    rows.push_back(row(
        "PrintWriter, print", [] { return Printing(); },
        [](Printing& out) { out.stream->print("bytes in the default encoding"); }));
    rows.push_back(product("ByteArrayOutputStream, toString",
                           [] { return bytesOut().stream->toString(u"UTF-8"); }));
    rows.push_back(product("PrintWriter", [] { return Printing(); }));
    rows.push_back(product("BufferedWriter", [] { return bufferedWriter(); }));
}

Reference<ByteArrayInputStream> bytesIn()
{
    return makeReference<ByteArrayInputStream>(signedBytes(BYTES),
                                               static_cast<std::int32_t>(BYTES.size()));
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
    rows.push_back(product("BufferedInputStream", [] { return markedIn(); }));
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

File fileFor(std::uint32_t mode, bool open)
{
    File file;
    file.folder->write("file.txt", "begun");
    if (open) file.stream = makeReference<FileOutputStream>(file.path, mode);
    return file;
}

void addFiles(std::vector<Row>& rows)
{
    const std::pair<const char*, std::uint32_t> modes[] = {
        {"ATEND", FileOutputStream::ATEND},
        {"APPEND", FileOutputStream::APPEND},
        {"LOCK and KEEPCLOSED", FileOutputStream::LOCK | FileOutputStream::KEEPCLOSED},
    };
    for (const auto& [name, value] : modes) {
        const std::uint32_t mode = value;
        rows.push_back(row(
            std::string("FileOutputStream, ") + name, [=] { return fileFor(mode, false); },
            [=](File& file) { file.stream = makeReference<FileOutputStream>(file.path, mode); }));
    }
    rows.push_back(row(
        "FileOutputStream, print", [] { return fileFor(FileOutputStream::APPEND, true); },
        [](File& file) {
            const auto writer =
                makeReference<OutputStreamWriter>(file.stream.get(), u"CP1252", 100);
            writer->write(TEXT);
            writer->flush();
        }));
    rows.push_back(row(
        "FileInputStream", [] { return fileFor(0, false); },
        [](File& file) {
            const auto in = makeReference<FileInputStream>(file.path);
            if (in->read() != 'b') throw Exception();
        }));
}

} // namespace

std::vector<Row> streamRows()
{
    std::vector<Row> rows;
    addOutputs(rows);
    addInputs(rows);
    addFiles(rows);
    return rows;
}

} // namespace orv::test
