#include "tools/orv/Arguments.h"

#include <algorithm>

namespace tool {

using orv::Reference;
using orv::String;
using Element = orv::util::CommandLineParser::Element;

Arguments::Arguments(int count, char** words, std::span<const char16_t* const> known,
                     std::int32_t wordCount)
{
    m_parser.parse(count, words);
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
    const String option = String(u"-") + name;
    if (!has(name)) throw UsageError{option + u" is missing"};
    const Reference<const Element> element = m_parser.getOption(name);
    String joined;
    for (std::int32_t i = 0; i < element->getValueCount(); ++i) {
        if (i > 0) joined.append(u',');
        joined.append(element->getValueString(i));
    }
    if (joined.getLength() == 0)
        throw UsageError{option + u" has no value; write " + option + u"=VALUE"};
    return joined;
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
