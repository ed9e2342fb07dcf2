#include "components/tcptransport/Settings.h"

#include "orv/Failure.h"

namespace orv::components::tcptransport {

namespace {

/// Decimal digits alone, at most `most`.
std::int32_t numberOf(const String& text, std::int32_t most)
{
    constexpr std::int32_t MOST_DIGITS = 10;
    if (text.getLength() < 1 || text.getLength() > MOST_DIGITS) throwResult(E_INVALIDARG);
    std::int64_t value = 0;
    for (std::int32_t i = 0; i < text.getLength(); ++i) {
        const char16_t digit = text.getData()[i];
        if (digit < u'0' || digit > u'9') throwResult(E_INVALIDARG);
        value = value * 10 + (digit - u'0');
    }
    if (value > most) throwResult(E_INVALIDARG);
    return static_cast<std::int32_t>(value);
}

/// Asking changes no set, though it is no const operation.
class Reader {
public:
    explicit Reader(const util::PropertySet& set) : m_set(const_cast<util::PropertySet&>(set)) {}

    bool has(const char16_t* name) const { return m_set.hasProperty(name); }
    String text(const char16_t* name) const { return has(name) ? m_set.get(name) : String(); }
    std::int32_t number(const char16_t* name, std::int32_t most) const
    {
        return has(name) ? numberOf(m_set.get(name), most) : 0;
    }

private:
    util::PropertySet& m_set;
};

} // namespace

Settings::Settings(const util::PropertySet& properties)
{
    const Reader reader(properties);
    if (!reader.has(PORT)) throwResult(E_NOT_FOUND);
    host = reader.text(HOST);
    port = static_cast<std::uint16_t>(reader.number(PORT, UINT16_MAX));
    backlog = reader.number(BACKLOG, INT32_MAX);
    timeout = reader.number(TIMEOUT, INT32_MAX);
    acceptTimeout = reader.number(ACCEPT_TIMEOUT, INT32_MAX);
}

} // namespace orv::components::tcptransport
