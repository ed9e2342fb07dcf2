#include "tools/orv/Command.h"

#include "orv/Failure.h"
#include "orv/Version.h"

namespace tool {
namespace {

using orv::String;

constexpr std::int32_t NAME_ROOM = 40;

void runAbout(const Arguments&, orv::io::PrintWriter& out)
{
    char16_t encoding[NAME_ROOM] = {};
    char16_t locale[NAME_ROOM] = {};
    orv::throwIfFailed(ORVGetDefaultCharEncoding(encoding, NAME_ROOM));
    orv::throwIfFailed(ORVGetDefaultLocale(locale, NAME_ROOM));
    out.println(String(u"version ") + ORVGetVersion());
    out.println(String(u"default encoding ") + encoding);
    out.println(String(u"default locale ") + locale);
}

} // namespace

const Command about = {u"about",
                       u"version, default encoding, default locale",
                       u"\n\nPrints the library's version, default encoding and default locale.",
                       {},
                       0,
                       &runAbout};

} // namespace tool
