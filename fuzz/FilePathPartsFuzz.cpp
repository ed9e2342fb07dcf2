#include "orv/Exceptions.h"
#include "orv/util/FilePath.h"
#include "orv/util/PathNormalizer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// \file
/// The root and the parts of a path against a plain second reading of it.

namespace {

using orv::String;
using orv::util::FilePath;
using orv::util::PathNormalizer;
using Text = std::u16string;

void require(bool holds)
{
    if (!holds) std::abort();
}

Text unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

String stringOf(const Text& text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

struct Parts {
    const char16_t* refusal = nullptr;
    Text path;
    std::size_t root = 0;
};

/// Where the share's name ends in a path that begins with a server.
std::size_t shareEnd(const Text& path, const char16_t*& refusal)
{
    if (path.size() < 3 || !path.starts_with(u"\\\\")) return 0;
    if (path[2] == u'\\') refusal = u"no server name";
    const std::size_t server = std::min(path.find(u'\\', 2), path.size());
    const std::size_t share = std::min(path.find(u'\\', server + 1), path.size());
    if (refusal == nullptr && share <= server + 1) refusal = u"no share name";
    return share;
}

Parts partsOf(const Text& text)
{
    Parts parts{nullptr, text, 0};
    std::replace(parts.path.begin(), parts.path.end(), u'/', u'\\');
    const std::size_t colon = parts.path.find(u':');
    if (colon != Text::npos && colon > 1) parts.refusal = u"invalid drive";
    if (parts.refusal == nullptr) {
        parts.root = colon == 1 ? 2 : shareEnd(parts.path, parts.refusal);
    }
    if (parts.refusal != nullptr) return parts;

    PathNormalizer normalizer(PathNormalizer::SLASH_BACK);
    const Text rest = parts.path.substr(parts.root);
    parts.path.replace(parts.root, Text::npos, unitsOf(normalizer.normalize(stringOf(rest))));
    if (rest.starts_with(u'\\')) ++parts.root;
    return parts;
}

/// Roots may reach one unit past a path whose separator a ".." took away.
Text upTo(const Text& path, std::size_t end)
{
    return path.substr(0, end);
}

void check(const FilePath& path, const Parts& parts)
{
    const Text& text = parts.path;
    require(unitsOf(path.toString()) == text);
    require(path.isAbsolutePath() == (parts.root > 0));
    require(path.isUNCPath() == text.starts_with(u"\\\\"));

    Text drive = upTo(text, parts.root);
    if (drive.size() == parts.root && drive.ends_with(u'\\')) drive.pop_back();
    require(unitsOf(path.getDrive()) == drive);

    const std::size_t separator = text.rfind(u'\\');
    const bool behindRoot = separator != Text::npos && separator >= parts.root;
    require(unitsOf(path.getDirectory()) == upTo(text, behindRoot ? separator : parts.root));
    Text parent;
    if (text.size() > parts.root) parent = upTo(text, parts.root);
    if (behindRoot) parent = upTo(text, separator);
    require(unitsOf(path.getParentPath()) == parent);

    const std::size_t start =
        separator == Text::npos ? parts.root : std::max(separator + 1, parts.root);
    const Text name = text.substr(std::min(start, text.size()));
    const std::size_t dot = std::min(name.rfind(u'.'), name.size());
    require(unitsOf(path.getName()) == name);
    require(unitsOf(path.getBaseName()) == name.substr(0, dot));
    require(unitsOf(path.getExtension()) == name.substr(dot));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 500) return -1;
    const Text text(data, data + size);
    if (text.find(u'\0') != Text::npos) return -1;
    const Parts parts = partsOf(text);
    try {
        const FilePath path(stringOf(text));
        require(parts.refusal == nullptr);
        check(path, parts);
    } catch (const orv::InvalidPathException& exception) {
        require(parts.refusal != nullptr);
        require(exception.getDescription().equals(parts.refusal));
    }
    return 0;
}
