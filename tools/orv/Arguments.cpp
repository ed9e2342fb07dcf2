#include "tools/orv/Arguments.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

using orv::Reference;
using orv::String;
using Element = orv::util::CommandLineParser::Element;

namespace {

[[noreturn]] void noValue(const char16_t* name)
{
    const String option = String(u"-") + name;
    throw UsageError{option + u" has no value; write " + option + u"=VALUE"};
}

/// Whether `start`, the option with its "=", begins the word behind its switch.
bool isValueOf(const String& start, const char* word, String* value)
{
    const String text(word);
    const std::int32_t first = text.findFirstNotOf(u"-/", 2);
    if (first < 1 || !text.substring(first).startsWith(start)) return false;
    *value = text.substring(first + start.getLength());
    return true;
}

} // namespace

Arguments::Arguments(int count, char** words, std::span<const char16_t* const> known,
                     std::int32_t wordCount)
    : m_words(words, static_cast<std::size_t>(count))
{
    // The parser has a grammar for values, with lists and quotes; here they are taken as they are.
    std::vector<std::string> names;
    for (const char* word : m_words) {
        const std::string_view text(word);
        const bool isOption = text.find_first_of("-/") == 0;
        names.emplace_back(text.substr(0, isOption ? text.find('=') : std::string_view::npos));
    }
    std::vector<char*> pointers;
    for (std::string& name : names) pointers.push_back(name.data());
    m_parser.parse(count, pointers.data());
    for (std::int32_t i = 0; i < m_parser.getElementCount(); ++i) {
        const Reference<const Element> element = m_parser.getElement(i);
        const String name = element->getName();
        if (element->getPosition() >= 0 && name.getLength() == 0) continue;
        const bool isKnown = std::any_of(known.begin(), known.end(),
                                         [&](const char16_t* option) { return name == option; });
        if (!isKnown) throw UsageError{u"there is no option -" + name};
    }
    if (m_parser.getParameterCount() > wordCount) {
        throw UsageError{u"unexpected word \"" +
                         m_parser.getParameter(wordCount)->getValueString(0) + u"\""};
    }
}

bool Arguments::has(const char16_t* name) const
{
    return m_parser.isPresent(name);
}

String Arguments::text(const char16_t* name) const
{
    const String value = verbatim(name);
    if (value.getLength() == 0) noValue(name);
    return value;
}

std::vector<String> Arguments::texts(const char16_t* name) const
{
    std::vector<String> values;
    String value;
    for (const char* word : m_words) {
        if (isValueOf(String(name) + u"=", word, &value)) values.push_back(value);
    }
    const bool isWhole = std::none_of(values.begin(), values.end(),
                                      [](const String& each) { return each.getLength() == 0; });
    if (!isWhole || (values.empty() && has(name))) noValue(name);
    return values;
}

String Arguments::verbatim(const char16_t* name) const
{
    String value;
    // As in the parser, the last one counts.
    for (std::size_t i = m_words.size(); i-- > 0;) {
        if (isValueOf(String(name) + u"=", m_words[i], &value)) return value;
    }
    if (!has(name)) throw UsageError{String(u"-") + name + u" is missing"};
    noValue(name);
}

std::int32_t Arguments::number(const char16_t* name, std::int32_t least, std::int32_t most) const
{
    const String value = text(name);
    const char16_t* end = nullptr;
    const std::int32_t number = ORVStrToLW(value.getData(), &end, 10);
    if (end != value.getData() + value.getLength() || number < least || number > most) {
        throw UsageError{String(u"-") + name + u" takes a number from " + String::valueOf(least) +
                         u" to " + String::valueOf(most) + u", not \"" + value + u"\""};
    }
    return number;
}

String Arguments::word(std::int32_t index, const char16_t* what) const
{
    if (index >= m_parser.getParameterCount()) throw UsageError{String(what) + u" is missing"};
    return m_parser.getParameter(index)->getValueString(0);
}

} // namespace tool
