#include "tools/orv/Command.h"

#include "orv/ClassInfo.h"
#include "orv/Failure.h"

#include <vector>

namespace tool {
namespace {

void runClasses(const Arguments&, orv::io::PrintWriter& out)
{
    std::uint32_t count = 0;
    if (ORVEnumerateClassInfo(&count, nullptr) != orv::E_BUFFER_TOO_SMALL) return;
    std::vector<orv::ClassInfo> infos(count);
    orv::throwIfFailed(ORVEnumerateClassInfo(&count, infos.data()));
    for (const orv::ClassInfo& info : infos) {
        out.print(info.name);
        out.println(info.hasFactory != 0 ? u"*" : u"");
    }
}

} // namespace

const Command classes = {
    u"classes",
    u"the run-time classes of the library",
    u"\n\nPrints the names of the run-time classes in the order of their "
    u"registration, \"*\" behind\nthose that Class::createInstance() can make.",
    {},
    0,
    &runClasses};

} // namespace tool
