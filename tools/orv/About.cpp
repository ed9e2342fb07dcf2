#include "tools/orv/Command.h"

#include "orv/Failure.h"
#include "orv/Version.h"
#include "platform/store.h"

namespace tool {
namespace {

using orv::String;

constexpr std::int32_t NAME_ROOM = 40;
constexpr std::int32_t PATH_ROOM = 4096;

void runAbout(const Arguments&, orv::io::PrintWriter& out)
{
    char16_t encoding[NAME_ROOM] = {};
    char16_t locale[NAME_ROOM] = {};
    orv::throwIfFailed(ORVGetDefaultCharEncoding(encoding, NAME_ROOM));
    orv::throwIfFailed(ORVGetDefaultLocale(locale, NAME_ROOM));
    out.println(String(u"version ") + ORVGetVersion());
    out.println(String(u"default encoding ") + encoding);
    out.println(String(u"default locale ") + locale);
    char16_t store[PATH_ROOM];
    const bool hasStore = orvcore::storePath(store, PATH_ROOM) > 0;
    out.println(String(u"configuration store ") + (hasStore ? store : u"none"));
}

} // namespace

const Command about = {
    u"about",
    u"version, default encoding, default locale, configuration store",
    u"\n\nPrints the library's version, default encoding and default locale, and the "
    u"file of the\nconfiguration store.",
    {},
    0,
    &runAbout};

} // namespace tool
