#include "tools/orv/Command.h"

#include "orv/Exception.h"
#include "orv/Failure.h"
#include "orv/Reference.h"
#include "orv/text/charset/ByteToCharConverter.h"
#include "orv/text/charset/EncInfo.h"

#include <vector>

namespace tool {
namespace {

using orv::String;
using orv::text::charset::EncodingInfo;

constexpr orv::Result NOT_REGISTERED = orv::makeResult(0x80040154u);

String joinedAliases(const EncodingInfo& info)
{
    String joined;
    for (const char16_t* const* alias = info.aliases; *alias != nullptr; ++alias) {
        if (joined.getLength() > 0) joined.append(u',');
        joined.append(*alias);
    }
    return joined;
}

/// Who serves the encoding, asked the way a conversion does.
const char16_t* stateOf(const EncodingInfo& info)
{
    if (info.isBuiltIn != 0) return u"built-in";
    GUID classId{};
    const String progId = String(u"Tessaly.CharCodec.") + info.name;
    const orv::Result result = ORVComClassIDFromProgID(progId.getData(), &classId);
    if (result == NOT_REGISTERED) return u"missing";
    try {
        const orv::Reference made(orv::text::charset::ByteToCharConverter::getConverter(info.name));
        return u"external";
    } catch (const orv::Exception&) {
        return u"broken";
    }
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
        line.append(u'\t').append(stateOf(info)).append(u'\t');
        out.println(line.append(joinedAliases(info)));
    }
}

} // namespace

const Command encodings = {u"encodings",
                           u"the encodings and their aliases",
                           u"\n\nPrints a line for each encoding, separated by tabs: name, code "
                           u"page or \"-\", who serves it,\nand the aliases joined by commas.\n\n"
                           u"  built-in  the library\n"
                           u"  external  a component that is registered for it\n"
                           u"  broken    a component that is registered and gives no codec\n"
                           u"  missing   nobody: it takes a component",
                           {},
                           0,
                           &runEncodings};

} // namespace tool
