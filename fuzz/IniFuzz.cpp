#include "orv/Exception.h"
#include "orv/String.h"
#include "orv/util/IniFile.h"
#include "orv/util/IniFileException.h"
#include "orv/util/IniFileIterators.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

/// \file
/// Configuration files of any bytes, read and saved, beside a plain model that knows nothing but
/// the form of the file. Decoding and encoding are not its business and are the library's.

namespace {

using orv::String;
using orv::util::IniFile;
using orv::util::IniFileKeyIterator;
using orv::util::IniFileSetIterator;

void require(bool holds)
{
    if (!holds) std::abort();
}

std::u16string lowered(std::u16string text)
{
    for (char16_t& unit : text) unit = ORVToLowerW(unit);
    return text;
}

/// Names by their lower case, with the spelling that came first.
template <class Value>
struct Named {
    std::u16string spelling;
    Value value;
};
using Keys = std::map<std::u16string, Named<std::u16string>>;
using Sets = std::map<std::u16string, Named<Keys>>;

template <class Map, class Value>
void assign(Map& map, const std::u16string& name, const Value& value)
{
    const auto place = map.find(lowered(name));
    if (place != map.end()) {
        place->second.value = value;
    } else {
        map[lowered(name)] = {name, value};
    }
}

std::u16string trimmed(std::u16string text)
{
    const auto isBlank = [](char16_t unit) {
        return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
    };
    while (!text.empty() && isBlank(text.back())) text.pop_back();
    while (!text.empty() && isBlank(text.front())) text.erase(text.begin());
    return text;
}

/// As a C program takes them: up to a line feed, 510 bytes, or the end, and then to a zero byte.
std::vector<std::string> linesOf(const std::string& bytes)
{
    std::vector<std::string> lines;
    std::string line;
    for (const char byte : bytes) {
        line += byte;
        if (byte != '\n' && line.size() < 510) continue;
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) lines.push_back(line);
    return lines;
}

/// A text with zero units, which overlong UTF-8 gives: nobody can ask for its names.
struct Unaddressable {};

Sets modelOf(const std::string& bytes)
{
    Sets sets;
    Keys keys;
    std::u16string name;
    bool inSet = false, marked = false;
    for (std::string line : linesOf(bytes)) {
        if (line.compare(0, 3, "\xEF\xBB\xBF") == 0) {
            marked = true;
            line.erase(0, 3);
        }
        line = line.c_str();
        if (line.empty() || std::string("#;: \t\r\n\v\f").find(line[0]) != line.npos) continue;
        const String decoded(line.data(), static_cast<std::int32_t>(line.size()),
                             marked ? u"UTF-8" : nullptr);
        std::u16string text(decoded.getData(), static_cast<std::size_t>(decoded.getLength()));
        if (text.find(u'\0') != text.npos) throw Unaddressable();
        if (line[0] == '[') {
            if (inSet) assign(sets, name, keys);
            inSet = true;
            keys.clear();
            const std::size_t end = text.rfind(u']');
            if (end == text.npos) break;
            name = text.substr(1, end - 1);
            continue;
        }
        if (!text.empty()) text.pop_back(); // bytes that are no whole character give none
        const std::size_t equals = text.find(u'=');
        if (equals == text.npos) break;
        assign(keys, trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1)));
    }
    if (!name.empty()) assign(sets, name, keys);
    return sets;
}

std::string narrowed(const std::u16string& text, std::int32_t room)
{
    char bytes[260];
    ORVUnicodeToAnsi(bytes, text.c_str(), room);
    return bytes;
}

std::string savedForm(const Sets& sets)
{
    std::string text;
    for (const auto& [lowerSet, set] : sets) {
        text += "[" + narrowed(set.spelling, 260) + "]\n";
        for (const auto& [lowerKey, key] : set.value) {
            text += narrowed(key.spelling, 255) + "=" + narrowed(key.value, 255) + "\n";
        }
        text += "\n";
    }
    return text;
}

void checkContent(IniFile& file, const Sets& sets)
{
    std::size_t count = 0;
    for (IniFileSetIterator names(file, u""); names.hasNext(); ++count) names.next();
    require(count == sets.size());
    for (const auto& [lowerSet, set] : sets) {
        IniFileKeyIterator names(file, lowerSet.c_str());
        for (const auto& [lowerKey, key] : set.value) {
            require(names.next() == key.spelling.c_str());
            std::vector<char16_t> value(key.value.size() + 1);
            require(file.GetValue(set.spelling.c_str(), lowerKey.c_str(), value.data(),
                                  value.size()) == S_OK);
            require(key.value == value.data());
        }
        require(!names.hasNext());
    }
}

std::string pathOfFile()
{
    static const std::string path = "/tmp/orv_fuzz_" + std::to_string(::getpid()) + ".ini";
    static const int atEnd = std::atexit([] { ::unlink(pathOfFile().c_str()); });
    static_cast<void>(atEnd);
    return path;
}

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void checkSaves(IniFile& file, const std::string& path, Sets sets)
{
    require(file.DeleteSet(u"no such set\n") == S_OK);
    require(contentOf(path) == savedForm(sets));
    if (sets.empty()) return;

    // One change of each kind, in the first set.
    Named<Keys>& set = sets.begin()->second;
    require(file.AddKey(set.spelling.c_str(), u"key", u"value", true) == S_OK);
    assign(set.value, u"key", std::u16string(u"value"));
    require(contentOf(path) == savedForm(sets));
    const std::u16string last = set.value.rbegin()->second.spelling;
    require(file.DeleteKey(set.spelling.c_str(), last.c_str()) == S_OK);
    set.value.erase(lowered(last));
    require(contentOf(path) == savedForm(sets));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string path = pathOfFile();
    std::ofstream(path, std::ios::binary) << bytes;
    const std::u16string name(path.begin(), path.end());

    std::optional<Sets> sets;
    try {
        sets = modelOf(bytes);
    } catch (const orv::Exception&) {
        // Not text, which the class must find too.
    } catch (const Unaddressable&) {
        return 0;
    }
    try {
        IniFile file(name.c_str(), nullptr, 1);
        require(sets.has_value());
        checkContent(file, *sets);
        checkSaves(file, path, *sets);
    } catch (const orv::util::IniFileException&) {
        std::abort();
    } catch (const orv::Exception&) {
        require(!sets.has_value());
        require(contentOf(path) == bytes);
    }
    return 0;
}
