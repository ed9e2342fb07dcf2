#pragma once

#include "orv/Exceptions.h"
#include "orv/Integers.h"
#include "orv/collections/Set.h"
#include "orv/io/StringWriter.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/LogEntry.h"
#include "orv/log/Logger.h"
#include "orv/log/TimeStamp.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace orv::log::test {

/// A processor that calls a function.
class Calling : public ::orv::quark::Implements<Object, ILogProcessor> {
public:
    using Body = std::function<void(const ILogEntry&)>;

    explicit Calling(Body body) : m_body(std::move(body)) {}
    void process(const ILogEntry* entry) override { m_body(*entry); }

private:
    Body m_body;
};

inline Reference<Calling> calling(Calling::Body body)
{
    return makeReference<Calling>(std::move(body));
}

/// A logger whose protected operations a test may call.
class OpenLogger : public Logger {
public:
    using Logger::getLogEntry;
    using Logger::log;
    using Logger::Logger;
};

/// The number in an entry's field "level".
inline int levelOf(const ILogEntry& entry)
{
    return dynamic_cast<const Integer32&>(*entry.getField(u"level"));
}

/// The names of the fields in their order, with a blank behind each.
inline std::u16string namesOf(const ILogEntry& entry)
{
    std::u16string names;
    const auto set = entry.getFieldNames();
    for (const auto walk = set->createConstIterator(); walk->hasNext();) {
        names += orv::test::units(*walk->next());
        names += u' ';
    }
    return names;
}

/// What `entry` looks like in the basic format.
inline std::u16string basicText(const ILogEntry& entry)
{
    const auto text = makeReference<io::StringWriter>(16);
    BasicLogWriter::create(text.get())->process(&entry);
    return std::u16string(orv::test::units(text->toString()));
}

/// An entry of another make, with the same fields as `entry`.
class ForeignEntry : public ::orv::quark::Implements<Object, ILogEntry> {
public:
    explicit ForeignEntry(const ILogEntry& entry) : m_entry(&entry) {}

    void setField(const String&, const Object*) override { throw UnsupportedOperationException(); }
    Reference<const Object> getField(const String& name) const override
    {
        return m_entry->getField(name);
    }
    bool hasField(const String& name) const override { return m_entry->hasField(name); }
    Reference<const collections::Set<String>> getFieldNames() const override
    {
        return m_entry->getFieldNames();
    }

private:
    Reference<const ILogEntry> m_entry;
};

} // namespace orv::log::test
