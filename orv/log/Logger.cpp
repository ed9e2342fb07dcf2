#include "orv/log/Logger.h"

#include "orv/Failure.h"
#include "orv/log/LogEntry.h"
#include "orv/log/internal/StandardFields.h"
#include "platform/threads.h"

namespace orv::log {

namespace {

using internal::StandardFields;

/// A read bracket over a text that is to be copied.
class ReadText {
public:
    explicit ReadText(const String& text) : m_text(text), m_units(text.getReadLock()) {}
    ReadText(const ReadText&) = delete;
    ReadText& operator=(const ReadText&) = delete;
    ~ReadText() { m_text.ReleaseReadLock(); }

    std::u16string_view view() const
    {
        return {m_units, static_cast<std::size_t>(m_text.getLength())};
    }

private:
    const String& m_text;
    const char16_t* m_units;
};

std::u16string_view viewOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

STRUCT_ORV_TIME localTime()
{
    STRUCT_ORV_TIME time;
    throwIfFailed(ORVTimeGetLocal(&time, nullptr));
    return time;
}

} // namespace

Logger::Logger() : m_processor(MultiProcessor::create()) {}

Logger::Logger(const String& name)
    : m_name(String::AcquireCopy, name), m_processor(MultiProcessor::create()), m_fieldName(true)
{
}

Logger::~Logger() noexcept(false) = default;

Reference<Logger> Logger::create()
{
    return makeReference<Logger>();
}

Reference<Logger> Logger::create(const String& name)
{
    return makeReference<Logger>(name);
}

void Logger::enableField(const String& name, bool enable)
{
    const struct {
        const char16_t* name;
        bool& flag;
    } fields[] = {{u"sequence", m_fieldSequence}, {u"thread", m_fieldThread},
                  {u"name", m_fieldName},         {u"timestamp", m_fieldTimestamp},
                  {u"level", m_fieldLevel},       {u"text", m_fieldText}};
    for (const auto& field : fields) {
        if (!name.equals(field.name, true)) continue;
        field.flag = enable;
        return;
    }
}

void Logger::addProcessor(ILogProcessor* processor)
{
    m_processor->addProcessor(processor);
}

void Logger::setProcessor(ILogProcessor* processor)
{
    Reference<MultiProcessor> only = MultiProcessor::create();
    only->addProcessor(processor);
    m_processor = only;
}

Reference<ILogProcessor> Logger::createProcessor(const String& /*name*/)
{
    return nullptr;
}

void Logger::log(const String& text)
{
    static_cast<ILevelLogger*>(this)->log(m_defaultLevel, text);
}

void Logger::log(std::int32_t level, const String& text)
{
    if (!isEnabled()) return;
    const Reference<LogEntry> entry = getLogEntry(level, text);
    addCustomFields(entry.get());
    log(entry.get());
}

void Logger::log(const ILogEntry* entry)
{
    m_sequence.fetch_add(1, std::memory_order_relaxed);
    m_processor->process(entry);
}

Reference<LogEntry> Logger::getLogEntry(std::int32_t level, const String& text)
{
    const ReadText units(text);
    StandardFields fields;
    if (m_fieldLevel) fields.setLevel(level);
    if (m_fieldText) fields.setText(units.view());
    if (m_fieldSequence) fields.setSequence(m_sequence.load(std::memory_order_relaxed));
    if (m_fieldThread) fields.setThread(orvcore::currentThreadId());
    if (m_fieldTimestamp) fields.setTime(localTime());
    if (m_fieldName) fields.setName(viewOf(m_name));
    return LogEntry::create(fields);
}

void Logger::addCustomFields(ILogEntry* /*entry*/) {}

} // namespace orv::log
