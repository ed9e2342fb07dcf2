#include "tools/orv/Command.h"

#include "orv/Failure.h"
#include "orv/text/charset/EncInfo.h"

#include <vector>

namespace tool {
namespace {

using orv::String;
using orv::text::charset::EncodingInfo;

String joinedAliases(const EncodingInfo& info)
{
    String joined;
    for (const char16_t* const* alias = info.aliases; *alias != nullptr; ++alias) {
        if (joined.getLength() > 0) joined.append(u',');
        joined.append(*alias);
    }
    return joined;
}

void runEncodings(const Arguments&, orv::io::PrintWriter& out)
{
    std::uint32_t count = 0;
    ORVEnumerateEncodings(&count, nullptr);
    std::vector<EncodingInfo> infos(count);
    orv::throwIfFailed(ORVEnumerateEncodings(&count, infos.data()));
    for (const EncodingInfo& info : infos) {
        String line(info.name);
        line.append(u'\t');
        line.append(info.codePage == 0 ? String(u"-") : String::valueOf(info.codePage));
        line.append(info.isBuiltIn != 0 ? u"\tbuilt-in\t" : u"\texternal\t");
        out.println(line.append(joinedAliases(info)));
    }
}

} // namespace

const Command encodings = {u"encodings",
                           u"the encodings and their aliases",
                           u"\n\nPrints a line for each encoding: name, code page or \"-\", "
                           u"\"built-in\" or \"external\", and the\naliases joined by commas, "
                           u"separated by tabs.",
                           {},
                           0,
                           &runEncodings};

} // namespace tool
