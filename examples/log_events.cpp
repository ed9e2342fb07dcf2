// The road of log entries: a logger, a queue with a thread of its own, and two files.
// Usage: log_events FOLDER

#include <orv/Exception>
#include <orv/Reference>
#include <orv/String>
#include <orv/io/FileOutputStream>
#include <orv/io/OutputStreamWriter>
#include <orv/log/AsyncProcessor>
#include <orv/log/BasicLogWriter>
#include <orv/log/ILogEntry>
#include <orv/log/Logger>
#include <orv/log/MultiProcessor>
#include <orv/log/XmlLogWriter>

#include <cstdio>
#include <thread>

using namespace orv;
using namespace orv::log;

namespace {

/// A logger that tells in each entry on whose behalf.
class UserLogger : public Logger {
public:
    explicit UserLogger(const String& user) : Logger(u"web"), m_user(makeReference<String>(user)) {}

protected:
    void addCustomFields(ILogEntry* entry) override { entry->setField(u"user", m_user.get()); }

private:
    Reference<String> m_user;
};

/// Text in UTF-8 to a file that starts empty, flushed entry by entry.
Reference<io::Writer> openText(const String& path)
{
    const auto bytes = makeReference<io::FileOutputStream>(path, io::FileOutputStream::TRUNC);
    return makeReference<io::OutputStreamWriter>(bytes.get(), u"UTF-8", 0x4000);
}

} // namespace

int main(int count, char** words)
{
    const String folder(count > 1 ? words[1] : ".");
    try {
        // Both writers get each entry, and one entry at a time.
        const auto writers = MultiProcessor::create();
        writers->addProcessor(
            BasicLogWriter::create(openText(folder + u"/events.log").get()).get());
        writers->addProcessor(XmlLogWriter::create(openText(folder + u"/events.xml").get()).get());

        // The threads that log only put their entries into a queue.
        auto queue = AsyncProcessor::create(writers.get(), 1);
        const auto serve = [&](const char16_t* user) {
            UserLogger logger(user);
            logger.enableField(u"sequence", true);
            logger.addProcessor(queue.get());
            for (int request = 0; request < 3; ++request) logger.log(request, u"request handled");
        };
        std::thread ann(serve, u"ann");
        std::thread ben(serve, u"ben");
        ann.join();
        ben.join();
        queue = nullptr; // the stop: what still waits is written here and now
    } catch (const Exception& exception) {
        std::printf("failed: 0x%08X\n", static_cast<unsigned>(exception.getResult()));
        return 1;
    }
    std::printf("6 events in events.log and events.xml\n");
    return 0;
}
