#include "orv/Exceptions.h"
#include "orv/util/FilePath.h"
#include "orv/util/PathNormalizer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// \file
/// Paths of any units. PathNormalizer is judged by a plain second version that works name by name;
/// the answers of a FilePath must fit together, and a normal form must stay what it is.

namespace {

using orv::String;
using orv::util::FilePath;
using orv::util::PathNormalizer;

void require(bool holds)
{
    if (!holds) std::abort();
}

std::u16string unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

/// Takes the last name off, with the separator before it unless that is to stay.
void dropName(std::u16string& out, bool keepSeparator)
{
    const std::size_t separator = out.rfind(u'\\');
    out.resize(separator == std::u16string::npos ? 0 : separator + (keepSeparator ? 1 : 0));
}

std::u16string plainlyNormalized(std::u16string path)
{
    std::replace(path.begin(), path.end(), u'/', u'\\');
    std::u16string out;
    bool atStart = true; // before any name, and behind a ".." that took the first one away
    std::size_t i = 0;
    while (i < path.size()) {
        const std::size_t nameStart = path.find_first_not_of(u'\\', i);
        const bool separated = nameStart != i;
        if (nameStart == std::u16string::npos) {
            return out + u'\\';
        }
        if (separated) atStart = false;
        const std::size_t found = path.find(u'\\', nameStart);
        const bool last = found == std::u16string::npos;
        const std::u16string name = path.substr(nameStart, last ? last : found - nameStart);
        i = last ? path.size() : found;

        const std::u16string whole = last ? path.substr(nameStart) : name;
        if (atStart && (whole == u"." || whole == u"..")) {
            const std::size_t next = last ? path.size() : path.find_first_not_of(u'\\', i);
            const bool ends = next == std::u16string::npos;
            if (whole == u"..") out += last ? u".." : u"..\\";
            if (whole == u"." && last) return path == u"." ? u"." : out.empty() ? u".\\" : out;
            if (whole == u"." && ends) return out + u".\\";
            if (ends) return out;
            i = next;
        } else if (whole == u"..") {
            dropName(out, last);
            if (last) return out;
            if (out.empty()) {
                atStart = true;
                ++i;
            }
        } else if (whole == u".") {
            if (last) return out + u'\\';
        } else {
            if (!atStart) out += u'\\';
            out += whole;
            atStart = false;
        }
    }
    return out;
}

void checkNormalizer(const String& text)
{
    PathNormalizer normalizer(PathNormalizer::SLASH_BACK);
    const String normal = normalizer.normalize(text);
    require(unitsOf(normal) == plainlyNormalized(unitsOf(text)));
    require(normalizer.normalize(normal).equals(normal));

    normalizer.setSlashType(PathNormalizer::SLASH_FORWARD);
    String forward = normalizer.normalize(text);
    forward.translate(u'/', u'\\');
    require(forward.equals(normal));
}

void checkParts(const FilePath& path)
{
    const String text = path.toString();
    require(text.indexOf(u'/') == -1);
    // Where ".." takes the separator behind a share away, the share has another name from then on.
    require(path.isUNCPath() || FilePath(text).toString().equals(text));
    require((path.getBaseName() + path.getExtension()).equals(path.getName()));
    require(text.endsWith(path.getName()));
    require(text.startsWith(path.getDirectory()));
    require(text.startsWith(path.getDrive()));
    require(text.startsWith(path.getParentPath()));
    require(path.getName().indexOf(u'\\') == -1);
    require(path.isAbsolutePath() || path.getDrive().getLength() == 0);
    require(path.getChildPath(u"x").getLength() == 0);
    try {
        static_cast<void>(path.getAbsolutePath());
        static_cast<void>(path.getCanonicalPath());
    } catch (const orv::Exception&) {
        // Too long, or a colon that the current folder moves to another place.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    String text;
    for (std::size_t i = 0; i < size; ++i) text.append(static_cast<char16_t>(data[i]));
    if (text.indexOf(u'\0') >= 0) return -1;
    checkNormalizer(text);
    try {
        checkParts(FilePath(text));
    } catch (const orv::InvalidPathException& exception) {
        require(exception.getDescription().startsWith(u"invalid drive") ||
                exception.getDescription().startsWith(u"no "));
    }
    return 0;
}
