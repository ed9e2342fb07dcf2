#include "orv/log/XmlLogWriter.h"

#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"

namespace orv::log {
namespace {

using io::test::RecordingWriter;
using test::ForeignEntry;

const std::u16string HEADER = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log>\n";

Reference<LogEntry>
entryOf(std::initializer_list<std::pair<const char16_t*, const char16_t*>> fields)
{
    const auto entry = LogEntry::create();
    for (const auto& [name, value] : fields) {
        entry->setField(name, makeReference<String>(value).get());
    }
    return entry;
}

TEST(LogWriters, writeAnEntryInOnePieceAndFlushIt)
{
    const auto out = makeReference<RecordingWriter>();
    const Reference<ILogProcessor> writer = BasicLogWriter::create(out.get());
    writer->process(LogEntry::create().get());
    EXPECT_EQ(out->content, u"-------------------------\n");
    const std::u16string longText(5000, u'\u00E4');
    writer->process(entryOf({{u"one two", longText.c_str()}, {u"", u"<&>"}}).get());
    EXPECT_EQ(out->content, u"-------------------------\n"
                            u"one two=" +
                                longText +
                                u"\n"
                                u"=<&>\n"
                                u"-------------------------\n");
    EXPECT_EQ(out->writes, 2);
    EXPECT_EQ(out->flushes, 2);
    EXPECT_THROW(static_cast<void>(BasicLogWriter::create(nullptr)), ResultException);
}

TEST(LogWriters, anEntryThatCannotBePrintedLeavesNothing)
{
    const auto out = makeReference<RecordingWriter>();
    const auto entry = entryOf({{u"a", u"b"}});
    entry->setField(u"null", nullptr);
    const auto process = [&](const Reference<ILogProcessor>& writer) {
        writer->process(entry.get());
    };
    EXPECT_EQ(io::test::codeThrownBy([&] { process(BasicLogWriter::create(out.get())); }),
              0x80070026);
    EXPECT_EQ(out->writes, 0);
    EXPECT_EQ(io::test::codeThrownBy([&] { process(XmlLogWriter::create(out.get())); }),
              0x80070026);
    EXPECT_EQ(out->content, HEADER + u"</log>\n");
}

TEST(XmlLogWriter, writesADocument)
{
    const auto out = makeReference<RecordingWriter>();
    Reference<ILogProcessor> writer = XmlLogWriter::create(out.get());
    EXPECT_EQ(out->content, HEADER);
    EXPECT_EQ(out->flushes, 0);

    const auto logger = Logger::create();
    logger->addProcessor(writer.get());
    logger->log(3, u"a < b & {1}");
    writer->process(LogEntry::create().get());
    writer->process(entryOf({{u"user id=\"7\" x", u"ann"}}).get());
    const String cut(u"te\0xt", 5);
    logger->log(-1, cut);
    EXPECT_EQ(out->flushes, 4);
    writer = nullptr;
    EXPECT_EQ(out->content, HEADER + u"  <entry>\n"
                                     u"    <level> 3 </level>\n"
                                     u"    <text> a < b & {1} </text>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"    <user id=\"7\" x> ann </user>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"    <level> -1 </level>\n"
                                     u"    <text> te </text>\n"
                                     u"  </entry>\n");
    logger->setProcessor(BasicLogWriter::create(out.get()).get());
    EXPECT_TRUE(out->content.ends_with(u"  </entry>\n</log>\n"));
    EXPECT_EQ(out->flushes, 5);
}

/// Fails in write() or flush(), as a full disk does.
class FullWriter : public io::Writer {
public:
    using Writer::write;
    void write(const char16_t*, std::int32_t) override
    {
        if (isFull) throwResult(makeResult(0x80070070));
    }
    void flush() override
    {
        if (isFull) throwResult(makeResult(0x80070070));
    }

    bool isFull = false;
};

TEST(XmlLogWriter, aFailureAtTheEndGoesOutUnlessThereIsAnother)
{
    const auto out = makeReference<FullWriter>();
    Reference<ILogProcessor> writer = XmlLogWriter::create(out.get());
    Reference<ILogProcessor> other = XmlLogWriter::create(out.get());
    out->isFull = true;
    EXPECT_EQ(io::test::codeThrownBy([&] { writer = nullptr; }), 0x80070070);
    EXPECT_EQ(io::test::codeThrownBy([&] {
                  const Reference<ILogProcessor> last = std::move(other);
                  throwResult(E_FAIL);
              }),
              0x80004005);
}

/// A writer of a host's own.
class LineWriter : public AbstractLogWriter {
public:
    explicit LineWriter(io::Writer* out) : AbstractLogWriter(out) {}
    void flush() override { ++flushes; }

    int flushes = 0;

protected:
    String format(const ILogEntry* entry) override
    {
        return entry->getField(u"text")->toString() + u";";
    }
};

TEST(AbstractLogWriter, callsWhatSubclassesOverride)
{
    const auto out = makeReference<RecordingWriter>();
    const auto writer = makeReference<LineWriter>(out.get());
    const auto logger = Logger::create();
    logger->addProcessor(writer.get());
    logger->log(u"one");
    logger->log(u"two");
    EXPECT_EQ(out->content, u"one;two;");
    EXPECT_EQ(writer->flushes, 2);
    EXPECT_EQ(out->flushes, 0);
}

} // namespace
} // namespace orv::log
