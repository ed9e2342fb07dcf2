#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/log/ILevelLogger.h"
#include "orv/log/ILogger.h"
#include "orv/log/MultiProcessor.h"
#include "orv/quark/Implements.h"

#include <atomic>
#include <cstdint>

namespace orv::log {

class ILogEntry;
class LogEntry;

/// Makes entries of texts and hands them to its processors.
///
///     auto bytes = makeReference<io::FileOutputStream>(path, io::FileOutputStream::APPEND);
///     auto text = makeReference<io::OutputStreamWriter>(bytes.get(), u"UTF-8", 0x2000);
///     Reference<Logger> logger = Logger::create();
///     logger->enableField(u"timestamp", true);
///     logger->addProcessor(BasicLogWriter::create(text.get()).get());
///     logger->log(3, u"request handled");
///
/// An entry has the fields "level" and "text"; "name" in a logger with a name; and "sequence",
/// "thread" and "timestamp" once enableField() asks for them.
///
/// | Field | Class | Content |
/// |---|---|---|
/// | level | Integer32 | the level, a plain number |
/// | text | String | the text |
/// | sequence | Integer32 | entries before this one; two threads may get the same number |
/// | thread | UInteger32 | the system's identifier of the calling thread |
/// | timestamp | TimeStamp | local time of the call |
/// | name | String | the name of the logger |
///
/// Errors: an exception of a processor goes to the caller of log().
/// Threads: any for log(); what sets the logger up, only while nobody logs.
class ORV_API Logger : public ::orv::quark::Implements<Object, ILogger, ILevelLogger> {
public:
    Logger();
    explicit Logger(const String& name);
    ~Logger() noexcept(false) override;

    /// A logger without processors; with `name`, its entries have that as their field "name".
    [[nodiscard]] static Reference<Logger> create();
    [[nodiscard]] static Reference<Logger> create(const String& name);

    /// Switches a field of entries on or off, by its name in any case. An unknown name changes
    /// nothing.
    virtual void enableField(const String& name, bool enable);

    /// Whether log() does anything; true at first.
    bool isEnabled() const noexcept { return m_enabled.load(std::memory_order_relaxed); }
    void setEnabled(bool enabled) noexcept { m_enabled.store(enabled, std::memory_order_relaxed); }

    /// The level of log() without one; 0 at first.
    void setDefaultLevel(std::int32_t level) noexcept { m_defaultLevel = level; }

    /// Adds `processor` behind the others.
    void addProcessor(ILogProcessor* processor);
    /// Lets the present processors go; `processor` is the only one then.
    void setProcessor(ILogProcessor* processor);
    /// Null for every name.
    [[nodiscard]] static Reference<ILogProcessor> createProcessor(const String& name);

    /// Logs at the default level.
    void log(const String& text) override;
    void log(std::int32_t level, const String& text) override;

protected:
    /// Counts an entry made elsewhere and hands it to the processors, in a disabled logger too.
    void log(const ILogEntry* entry);

    /// An entry with the fields that are switched on.
    Reference<LogEntry> getLogEntry(std::int32_t level, const String& text);

    /// Sets further fields of an entry on its way to the processors; by default none.
    virtual void addCustomFields(ILogEntry* entry);

private:
    String m_name;
    std::atomic<bool> m_enabled{true};
    Reference<MultiProcessor> m_processor;
    std::int32_t m_defaultLevel = 0;
    bool m_fieldSequence = false;
    bool m_fieldThread = false;
    bool m_fieldName = false;
    bool m_fieldTimestamp = false;
    bool m_fieldLevel = true;
    bool m_fieldText = true;
    std::atomic<std::int32_t> m_sequence{0};
};

} // namespace orv::log
