#include "tools/orv/Command.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/Version.h"
#include "platform/store.h"
#include "tools/orv/Components.h"

namespace tool {
namespace {

using orv::String;

constexpr std::int32_t NAME_ROOM = 40;
constexpr std::int32_t PATH_ROOM = 4096;

void printComponents(orv::io::PrintWriter& out)
{
    try {
        for (const RegisteredClass& each : registeredClasses()) {
            const String name = each.progId.getLength() == 0 ? each.classId : each.progId;
            out.println(u"component " + name + u" in " + each.file +
                        (each.isThere ? u"" : u", which is missing"));
        }
    } catch (const orv::Exception&) {
        out.println(u"components unknown: the store cannot be read");
    }
}

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
    printComponents(out);
}

} // namespace

const Command about = {
    u"about",
    u"version, default encoding, default locale, configuration store, components",
    u"\n\nPrints the library's version, default encoding and default locale, the file of the\n"
    u"configuration store and a line for each class of a component that is registered in it.",
    {},
    0,
    &runAbout};

} // namespace tool
