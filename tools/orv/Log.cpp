#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/Object.h"
#include "orv/exec/Thread.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/io/InputStreamReader.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/AsyncProcessor.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/Logger.h"
#include "orv/log/MultiProcessor.h"
#include "orv/log/XmlLogWriter.h"
#include "platform/console.h"

#include <atomic>

namespace tool {
namespace {

using orv::makeReference;
using orv::Reference;
using orv::String;
using orv::io::FileOutputStream;
using namespace orv::log;

constexpr std::int32_t INPUT_BUFFER = 1 << 16; ///< bytes and units
constexpr std::int32_t BRIDGE = 1 << 20; ///< bytes of an entry that go to the file in one piece
constexpr std::int32_t MOST_THREADS = 1000;

/// Stands before the writer: an entry longer than the bridge stays together, and the command learns
/// what the threads of an AsyncProcessor tell nobody.
class Gatekeeper : public orv::quark::Implements<orv::Object, ILogProcessor> {
public:
    Gatekeeper(Reference<FileOutputStream> file, Reference<ILogProcessor> writer)
        : m_file(std::move(file)), m_writer(std::move(writer))
    {
    }

    void process(const ILogEntry* entry) override
    {
        const Done done(m_done);
        try {
            m_file->wait();
            const Bracket bracket(*m_file);
            m_writer->process(entry);
        } catch (...) {
            orv::Result none = S_OK;
            m_failure.compare_exchange_strong(none, orv::resultOfCurrentException());
            throw;
        }
    }

    /// Waits until the threads have processed so many entries, or one of them has failed and ended:
    /// the stop of the queue then overtakes none that a thread is busy with.
    void awaitThreads(std::int64_t entries) const
    {
        while (m_done < entries && m_failure == S_OK) orv::exec::Thread::sleep(1);
    }

    /// Waits until so many entries have been processed, by whatever thread, and ends the document.
    void close(std::int64_t entries)
    {
        while (m_done < entries) orv::exec::Thread::sleep(1);
        m_writer = nullptr;
        orv::throwIfFailed(m_failure);
    }

private:
    class Done {
    public:
        explicit Done(std::atomic<std::int64_t>& count) : m_count(count) {}
        Done(const Done&) = delete;
        Done& operator=(const Done&) = delete;
        ~Done() { ++m_count; }

    private:
        std::atomic<std::int64_t>& m_count;
    };

    class Bracket {
    public:
        explicit Bracket(FileOutputStream& file) : m_file(file) {}
        Bracket(const Bracket&) = delete;
        Bracket& operator=(const Bracket&) = delete;
        ~Bracket() noexcept(false) { m_file.signal(); }

    private:
        FileOutputStream& m_file;
    };

    Reference<FileOutputStream> m_file;
    Reference<ILogProcessor> m_writer;
    std::atomic<std::int64_t> m_done{0};
    std::atomic<orv::Result> m_failure{S_OK};
};

std::uint32_t fileMode(const Arguments& arguments)
{
    constexpr struct {
        const char16_t* option;
        std::uint32_t mode;
    } modes[] = {{u"append", FileOutputStream::APPEND},
                 {u"lock", FileOutputStream::LOCK | FileOutputStream::ATEND},
                 {u"keepclosed", FileOutputStream::KEEPCLOSED | FileOutputStream::ATEND}};
    std::uint32_t chosen = 0;
    for (const auto& [option, mode] : modes) {
        if (!arguments.has(option)) continue;
        if (chosen != 0) throw UsageError{u"-append, -lock and -keepclosed exclude one another"};
        chosen = mode;
    }
    return chosen != 0 ? chosen : FileOutputStream::TRUNC;
}

String textOr(const Arguments& arguments, const char16_t* option, const char16_t* otherwise)
{
    return arguments.has(option) ? arguments.text(option) : String(otherwise);
}

/// The name of an encoding, empty for the default one.
const char16_t* nameOrDefault(const String& encoding)
{
    return encoding.isEmpty() ? nullptr : encoding.getData();
}

bool isXml(const Arguments& arguments)
{
    const String format = textOr(arguments, u"format", u"basic");
    if (format != u"basic" && format != u"xml") {
        throw UsageError{u"-format is basic or xml, not \"" + format + u"\""};
    }
    return format == u"xml";
}

Reference<Gatekeeper> openLog(const Arguments& arguments)
{
    const String path = arguments.text(u"out");
    const std::uint32_t mode = fileMode(arguments);
    const bool asXml = isXml(arguments);
    const String encoding = textOr(arguments, u"encoding", u"");
    return named(u"cannot open " + path, [&] {
        auto file = makeReference<FileOutputStream>(path, mode);
        const auto text =
            makeReference<orv::io::OutputStreamWriter>(file.get(), nameOrDefault(encoding), BRIDGE);
        auto writer = asXml ? XmlLogWriter::create(text.get()) : BasicLogWriter::create(text.get());
        return makeReference<Gatekeeper>(std::move(file), std::move(writer));
    });
}

/// `target` itself, or a queue in front of it.
Reference<ILogProcessor> processorFor(const Arguments& arguments, ILogProcessor* target)
{
    if (!arguments.has(u"threads")) return Reference<ILogProcessor>(target);
    const std::int32_t threads = arguments.number(u"threads", 0, MOST_THREADS);
    const auto oneAtATime = MultiProcessor::create();
    oneAtATime->addProcessor(target);
    return AsyncProcessor::create(oneAtATime.get(), threads);
}

void enableFields(const Arguments& arguments, Logger& logger)
{
    if (!arguments.has(u"fields")) return;
    String rest = arguments.text(u"fields");
    while (!rest.isEmpty()) {
        const std::int32_t comma = rest.indexOf(u',');
        const String name = rest.substring(0, comma);
        if (name != u"sequence" && name != u"thread" && name != u"timestamp") {
            throw UsageError{u"-fields takes sequence, thread and timestamp, not \"" + name +
                             u"\""};
        }
        logger.enableField(name, true);
        rest = comma < 0 ? String() : rest.substring(comma + 1);
    }
}

Reference<Logger> makeLogger(const Arguments& arguments)
{
    auto logger =
        arguments.has(u"name") ? Logger::create(arguments.text(u"name")) : Logger::create();
    if (arguments.has(u"level")) {
        logger->setDefaultLevel(arguments.number(u"level", INT32_MIN, INT32_MAX));
    }
    enableFields(arguments, *logger);
    return logger;
}

Reference<orv::io::BufferedReader> openLines(const Arguments& arguments)
{
    const String encoding = textOr(arguments, u"from", u"");
    const auto bytes = makeReference<orv::io::FileInputStream>(orvcore::standardInput(), false);
    const auto units = named(u"cannot read the input", [&] {
        return makeReference<orv::io::InputStreamReader>(bytes.get(), nameOrDefault(encoding),
                                                         INPUT_BUFFER);
    });
    return makeReference<orv::io::BufferedReader>(units.get(), INPUT_BUFFER);
}

void runLog(const Arguments& arguments, orv::io::PrintWriter&)
{
    Reference<Logger> logger = makeLogger(arguments);
    const auto lines = openLines(arguments);
    const Reference<Gatekeeper> log = openLog(arguments);
    logger->addProcessor(processorFor(arguments, log.get()).get());
    std::int64_t entries = 0;
    named(u"cannot log to " + arguments.text(u"out"), [&] {
        for (String line; lines->readLine(line) >= 0; ++entries) logger->log(line);
        if (arguments.has(u"threads") && arguments.number(u"threads", 0, MOST_THREADS) > 0) {
            log->awaitThreads(entries);
        }
        logger = nullptr;
        log->close(entries);
    });
}

constexpr const char16_t* options[] = {u"out",    u"format", u"encoding",  u"from",
                                       u"name",   u"level",  u"fields",    u"threads",
                                       u"append", u"lock",   u"keepclosed"};

} // namespace

const Command log = {
    u"log",
    u"lines of standard input into a log file",
    u" -out=FILE [-format=basic|xml] [-encoding=NAME] [-from=NAME] [-name=NAME]\n"
    u"               [-level=N] [-fields=sequence,thread,timestamp] [-threads=N]\n"
    u"               [-append | -lock | -keepclosed]\n\n"
    u"Every line of standard input becomes an entry. An entry is on the disk before the next line "
    u"is\n"
    u"read, or with ORV_FLUSH=process in the environment in the system's hands, unless there are\n"
    u"threads.\n\n"
    u"  -encoding, -from  names as \"orv encodings\" prints them, of the file and of the input\n"
    u"  -name, -level     fields of every entry; the level is 0 otherwise\n"
    u"  -fields           further fields\n"
    u"  -threads          writes by so many threads, by more than one in no certain order; 0 "
    u"keeps\n"
    u"                    all entries for the end\n"
    u"  -append, -lock    adds to a file to which other processes write as well\n"
    u"  -keepclosed       adds to a file that is open only while it is written to\n\n"
    u"Otherwise the file is emptied first.",
    options,
    0,
    &runLog};

} // namespace tool
