#include "orv/util/CommandLineParser.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

/// \file
/// Command lines judged by a second reader of the same grammar, which works on plain texts. Lines
/// of the input are: default values of an option, and the command lines that one parser reads one
/// after the other.

namespace {

using orv::String;
using orv::util::CommandLineParser;
using Text = std::u16string;

void require(bool holds)
{
    if (!holds) std::abort();
}

Text unitsOf(const String& text)
{
    return {text.getData(), static_cast<std::size_t>(text.getLength())};
}

/// Cuts a text into items, in quotes or ended by one of a set of units.
class Cutter {
public:
    explicit Cutter(const Text& text) : m_rest(text.substr(0, text.find(u'\0'))) {}

    bool next(const Text& delimiters, Text& item)
    {
        const bool quoted = m_rest.starts_with(u'"');
        const Text ends = quoted ? u"\"" : delimiters;
        drop(ends);
        if (m_rest.empty()) return false;
        item = m_rest.substr(0, m_rest.find_first_of(ends));
        m_rest.erase(0, item.size() + 1);
        if (quoted) drop(delimiters);
        return true;
    }
    bool atSwitchOrEnd() const { return m_rest.empty() || m_rest[0] == u'-' || m_rest[0] == u'/'; }

private:
    void drop(const Text& units)
    {
        m_rest.erase(0, std::min(m_rest.find_first_not_of(units), m_rest.size()));
    }

    Text m_rest;
};

std::vector<Text> itemsOf(const Text& list, const Text& delimiters)
{
    std::vector<Text> items;
    Text item;
    for (Cutter cutter(list); cutter.next(delimiters, item);) items.push_back(item);
    return items;
}

struct Definition {
    int takes;
    std::vector<Text> defaults;
};
using Definitions = std::map<Text, Definition>;

struct Element {
    bool isOption;
    Text name;
    std::vector<Text> values;
};

bool isSwitch(const Text& word)
{
    return word[0] == u'-' || word[0] == u'/';
}

Element readOption(const Text& word, Cutter& cutter, const Definitions& definitions)
{
    const std::size_t equals = word.find(u'=');
    const Text full = word.substr(0, equals);
    const Text name = full.substr(std::min(full.find_first_not_of(u"-/"), full.size()));
    if (equals != Text::npos) return {true, name, itemsOf(word.substr(equals + 1), u",")};
    const auto found = definitions.find(name);
    if (found == definitions.end()) return {true, name, {}};
    if (cutter.atSwitchOrEnd()) return {true, name, found->second.defaults};

    Element element{true, name, {}};
    Text value;
    for (int i = 0; i < found->second.takes; ++i) {
        if (!cutter.next(u" ", value) || isSwitch(value)) break;
        element.values.push_back(value);
    }
    return element;
}

std::vector<Element> read(const Text& line, const Definitions& definitions)
{
    std::vector<Element> elements;
    Cutter cutter(line);
    for (Text word; cutter.next(u" ", word);) {
        elements.push_back(isSwitch(word) ? readOption(word, cutter, definitions)
                                          : Element{false, u"", {word}});
    }
    return elements;
}

void requireSame(const CommandLineParser::Element& element, const Element& expected)
{
    require(unitsOf(element.getName()) == expected.name);
    require(element.getValueCount() == static_cast<std::int32_t>(expected.values.size()));
    for (std::int32_t i = 0; i < element.getValueCount(); ++i) {
        require(unitsOf(element.getValueString(i)) == expected.values[static_cast<std::size_t>(i)]);
    }
}

void requireSame(const CommandLineParser& parser, const std::vector<Element>& expected)
{
    std::int32_t parameters = 0;
    std::map<Text, std::int32_t> last;
    require(parser.getElementCount() == static_cast<std::int32_t>(expected.size()));
    for (std::int32_t i = 0; i < parser.getElementCount(); ++i) {
        const Element& element = expected[static_cast<std::size_t>(i)];
        requireSame(*parser.getElement(i), element);
        require(parser.getElement(i)->getPosition() == i);
        if (element.isOption) {
            last[element.name] = i;
        } else {
            require(parser.getParameter(parameters++) == parser.getElement(i));
        }
    }
    require(parser.getParameterCount() == parameters);
    for (const auto& [name, position] : last) {
        require(parser.isPresent(name.c_str()));
        require(parser.getOption(name.c_str())->getPosition() == position);
    }
}

/// An option that does not appear is its definition, if that has defaults.
void checkAbsent(const CommandLineParser& parser, const Definitions& definitions)
{
    for (const auto& [name, definition] : definitions) {
        if (parser.isPresent(name.c_str())) continue;
        const auto option = parser.getOption(name.c_str());
        require((option != nullptr) == (name != u"none"));
        if (option == nullptr) continue;
        requireSame(*option, {true, name, definition.defaults});
        require(option->getPosition() == -1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 2000) return -1;
    std::vector<Text> lines(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += data[i];
        }
    }
    CommandLineParser parser;
    Definitions definitions;
    const auto define = [&](const Text& name, int takes, const Text& defaults) {
        const bool none = name == u"none";
        parser.defineOption(name.c_str(), takes, none ? nullptr : defaults.c_str());
        definitions[name] = {takes, itemsOf(defaults, u", ")};
    };
    define(u"none", 1, u"");
    define(u"a", 1, lines[0]);
    define(u"bc", 2, u"");
    define(u"B", -1, u"x,\"y z\"");
    define(u"", 3, lines[0]);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        parser.parse(String(lines[i].data(), static_cast<std::int32_t>(lines[i].size())));
        requireSame(parser, read(lines[i], definitions));
        checkAbsent(parser, definitions);
    }
    return 0;
}
