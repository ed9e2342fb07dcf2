#include "tools/orv/Files.h"

#include "orv/io/FileInputStream.h"
#include "orv/io/FileOutputStream.h"
#include "orv/util/FilePath.h"
#include "platform/console.h"

namespace tool {

using orv::makeReference;
using orv::Reference;
using orv::String;
using orv::util::FilePath;
using namespace orv::io;

Reference<InputStream> openInput(const Arguments& arguments)
{
    if (!arguments.has(u"in")) {
        return makeReference<FileInputStream>(orvcore::standardInput(), false);
    }
    const String path = arguments.text(u"in");
    return named(u"cannot open " + path,
                 [&]() -> Reference<InputStream> { return makeReference<FileInputStream>(path); });
}

Reference<OutputStream> openOutput(const Arguments& arguments)
{
    if (!arguments.has(u"out")) {
        return makeReference<FileOutputStream>(orvcore::standardOutput(), false);
    }
    const String path = arguments.text(u"out");
    return named(u"cannot open " + path, [&]() -> Reference<OutputStream> {
        return makeReference<FileOutputStream>(path, FileOutputStream::TRUNC);
    });
}

void refuseOneFileForBoth(const Arguments& arguments)
{
    if (!arguments.has(u"in") || !arguments.has(u"out")) return;
    const FilePath in(arguments.text(u"in"));
    const FilePath out(arguments.text(u"out"));
    if (FilePath(in.getAbsolutePath()).toString().equals(out.getAbsolutePath())) {
        throw UsageError{u"-in and -out are the same file"};
    }
}

} // namespace tool
