#include "orv/log/XmlLogWriter.h"

#include "tests/orv/io/Streams.h"
#include "tests/orv/log/Entries.h"

namespace orv::log {
namespace {

using io::test::codeThrownBy;
using io::test::RecordingWriter;

/// Fails where it is full, as a disk does.
class Output : public RecordingWriter {
public:
    using RecordingWriter::write;
    void write(const char16_t* units, std::int32_t n) override
    {
        if (isFull) throwResult(makeResult(0x80070070));
        RecordingWriter::write(units, n);
    }

    bool isFull = false;
};

const std::u16string HEADER = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<log>\n";

Reference<LogEntry> entryOf(const char16_t* name, const String& value)
{
    auto entry = LogEntry::create();
    entry->setField(name, makeReference<String>(value).get());
    return entry;
}

TEST(LogWriters, writeAnEntryInOnePieceAndFlushIt)
{
    const auto out = makeReference<Output>();
    const Reference<ILogProcessor> writer = BasicLogWriter::create(out.get());
    writer->process(LogEntry::create().get());
    const std::u16string longText(5000, u'\u00E4');
    const auto entry = entryOf(u"one two", longText.c_str());
    entry->setField(u"", makeReference<String>(u"<&>").get());
    writer->process(entry.get());
    EXPECT_EQ(out->content, u"-------------------------\none two=" + longText +
                                u"\n=<&>\n-------------------------\n");
    EXPECT_EQ(out->writes, 2);
    EXPECT_EQ(out->flushes, 2);
    EXPECT_THROW(static_cast<void>(BasicLogWriter::create(nullptr)), ResultException);
}

TEST(LogWriters, leaveNothingOfAnEntryThatCannotBePrinted)
{
    const auto out = makeReference<Output>();
    const auto entry = entryOf(u"a", u"b");
    entry->setField(u"null", nullptr);
    const auto process = [&](const Reference<ILogProcessor>& writer) {
        return codeThrownBy([&] { writer->process(entry.get()); });
    };
    EXPECT_EQ(process(BasicLogWriter::create(out.get())), 0x80070026);
    EXPECT_EQ(out->writes, 0);
    EXPECT_EQ(process(XmlLogWriter::create(out.get())), 0x80070026);
    EXPECT_EQ(out->content, HEADER + u"</log>\n");
}

TEST(LogWriters, ofXmlWriteADocument)
{
    const auto out = makeReference<Output>();
    Reference<ILogProcessor> writer = XmlLogWriter::create(out.get());
    EXPECT_EQ(out->content, HEADER);
    EXPECT_EQ(out->flushes, 0);
    const auto logger = Logger::create();
    logger->addProcessor(writer.get());
    logger->log(3, String(u"a < b & {1}\0cut", 15));
    writer->process(LogEntry::create().get());
    writer->process(entryOf(u"user id=\"7\" x", u"ann").get());
    EXPECT_EQ(out->flushes, 3);
    writer = nullptr;
    EXPECT_EQ(out->content, HEADER + u"  <entry>\n"
                                     u"    <level> 3 </level>\n"
                                     u"    <text> a < b & {1} </text>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"  </entry>\n"
                                     u"  <entry>\n"
                                     u"    <user id=\"7\" x> ann </user>\n"
                                     u"  </entry>\n");
    logger->setProcessor(BasicLogWriter::create(out.get()).get());
    EXPECT_TRUE(out->content.ends_with(u"  </entry>\n</log>\n"));
    EXPECT_EQ(out->flushes, 4);
}

TEST(LogWriters, ofXmlReportAFailureAtTheEndUnlessThereIsAnother)
{
    const auto out = makeReference<Output>();
    Reference<ILogProcessor> writer = XmlLogWriter::create(out.get());
    Reference<ILogProcessor> other = XmlLogWriter::create(out.get());
    out->isFull = true;
    EXPECT_EQ(codeThrownBy([&] { writer = nullptr; }), 0x80070070);
    EXPECT_EQ(codeThrownBy([&] {
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

TEST(LogWriters, callWhatSubclassesOverride)
{
    const auto out = makeReference<Output>();
    const auto writer = makeReference<LineWriter>(out.get());
    for (const char16_t* text : {u"one", u"two"}) writer->process(entryOf(u"text", text).get());
    EXPECT_EQ(out->content, u"one;two;");
    EXPECT_EQ(writer->flushes, 2);
    EXPECT_EQ(out->flushes, 0);
}

} // namespace
} // namespace orv::log
