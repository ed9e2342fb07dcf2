#include "tools/orv/Command.h"
#include "tools/orv/Files.h"

#include "orv/Failure.h"
#include "orv/io/BufferedReader.h"
#include "orv/io/InputStreamReader.h"
#include "orv/net/URI.h"

#include <cstdio>

namespace tool {
namespace {

using orv::makeReference;
using orv::String;
using orv::io::PrintWriter;
using orv::net::URI;

constexpr std::int32_t BLOCK = 1 << 16; ///< bytes and units read at a time

/// A line of output. Control characters that were escaped stay so, for they would end a column.
class Columns {
public:
    void add(const char16_t* name, const String& value)
    {
        if (!m_line.isEmpty()) m_line.append(u'\t');
        m_line.append(name).append(u'=');
        for (std::int32_t i = 0; i < value.getLength(); ++i) addUnit(value[i]);
    }

    const String& line() const { return m_line; }

private:
    void addUnit(char16_t unit)
    {
        if (unit > 0x1F && unit != 0x7F) {
            m_line.append(unit);
            return;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned>(unit));
        m_line.append(escape);
    }

    String m_line;
};

/// Adds the pairs of a query, which is escaped, in their order.
void addQuery(const URI& uri, Columns& columns)
{
    const String query = uri.getQuery(false);
    for (std::int32_t start = 0; start < query.getLength();) {
        const std::int32_t found = query.indexOf(u'&', start);
        const std::int32_t end = found < 0 ? query.getLength() : found;
        const String key = query.substring(start, query.indexOf(u'=', start));
        columns.add((u"query." + key).getData(), uri.getQueryValue(key, true));
        start = end + 1;
    }
    if (query.isEmpty()) columns.add(u"query", query);
}

String columnsOf(const URI& uri)
{
    Columns columns;
    if (uri.hasScheme()) columns.add(u"scheme", uri.getScheme());
    if (uri.hasUser()) columns.add(u"user", uri.getUser(true));
    if (uri.hasPassword()) columns.add(u"password", uri.getPassword(true));
    if (uri.hasHost()) columns.add(u"host", uri.getHost(true));
    if (uri.hasPort()) columns.add(u"port", String::valueOf(uri.getPort()));
    if (uri.hasPath()) columns.add(u"path", uri.getPath(true));
    if (uri.hasQuery()) addQuery(uri, columns);
    if (uri.isOpaque()) columns.add(u"opaque", uri.getSchemeSpecificPart(true));
    return columns.line();
}

void tellFailure(std::int32_t number, const orv::Exception& exception)
{
    String reason = exception.getDescription();
    if (reason.isEmpty()) reason = u"fewer than two characters behind a %";
    std::fprintf(stderr, "orv uri: line %d: %s\n", number, reason.getBytes());
}

void runUri(const Arguments& arguments, PrintWriter& out)
{
    using namespace orv::io;
    const auto text = makeReference<InputStreamReader>(openInput(arguments).get(), nullptr, BLOCK);
    const auto lines = makeReference<BufferedReader>(text.get(), BLOCK);
    std::int32_t failures = 0;
    String line;
    for (std::int32_t number = 1;; ++number) {
        if (named(u"cannot read the input", [&] { return lines->readLine(line); }) < 0) break;
        String columns;
        try {
            columns = columnsOf(URI(line));
        } catch (const orv::Exception& exception) {
            tellFailure(number, exception);
            ++failures;
            continue;
        }
        out.println(columns);
    }
    if (failures == 0) return;
    out.flush();
    throw Failure{String::valueOf(failures) + (failures == 1 ? u" line failed" : u" lines failed"),
                  E_FAIL};
}

constexpr const char16_t* options[] = {u"in"};

} // namespace

const Command uri = {
    u"uri",
    u"the components of URIs",
    u" [-in=FILE]\n\n"
    u"Reads a URI a line and prints its components a line, as NAME=VALUE separated by tabs: "
    u"scheme, "
    u"user,\npassword, host, port, path, query.KEY for each pair of the query, opaque. What a URI "
    u"lacks is left\nout. Values are unescaped, but for control characters. A line with a broken "
    u"escape is told on\nstandard error with its number, and then the exit status is 1.",
    options,
    0,
    &runUri};

} // namespace tool
