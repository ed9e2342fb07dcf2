#include "orv/util/CommandLineParser.h"

#include "orv/Failure.h"

#include <cstddef>

namespace orv::util {

constinit const char16_t* const CommandLineParser::m_switchChars = u"-/";

namespace {

/// The next item at `position`, which moves behind it; null at the end. One in double quotes also
/// takes the delimiters behind it along.
char16_t* nextItem(char16_t*& position, const char16_t* delimiters)
{
    if (*position != u'"') return ORVStrTokW(&position, delimiters);
    char16_t* const item = ORVStrTokW(&position, u"\"");
    while (*position != u'\0' && ORVStrChrW(delimiters, *position) != nullptr) ++position;
    return item;
}

/// A text to cut items out of.
std::vector<char16_t> writableCopy(const char16_t* text)
{
    return {text, text + ORVStrLenW(text) + 1};
}

template <class List>
const auto& elementAt(const List& list, std::int32_t index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= list.size()) {
        throwException(u"Invalid vector index");
    }
    return list[static_cast<std::size_t>(index)];
}

template <class List>
std::int32_t sizeOf(const List& list) noexcept
{
    return static_cast<std::int32_t>(list.size());
}

} // namespace

CommandLineParser::Element::Element(const String& name, std::int32_t position)
    : m_name(name), m_position(position)
{
}

CommandLineParser::Element::~Element() noexcept(false) = default;

String CommandLineParser::Element::getName() const
{
    return m_name;
}

std::int32_t CommandLineParser::Element::getPosition() const
{
    return m_position;
}

std::int32_t CommandLineParser::Element::getValueCount() const
{
    return sizeOf(m_values);
}

String CommandLineParser::Element::getValueString(std::int32_t index) const
{
    return elementAt(m_values, index);
}

std::int32_t CommandLineParser::Element::getValueLong(std::int32_t index) const
{
    const String value = getValueString(index);
    const char16_t* end = nullptr;
    const std::int32_t number = ORVStrToLW(value.getData(), &end, 0);
    if (end == value.getData()) throwException(u"Unable to convert string to long");
    return number;
}

double CommandLineParser::Element::getValueDouble(std::int32_t index) const
{
    const String value = getValueString(index);
    const char16_t* end = nullptr;
    const double number = ORVStrToDW(value.getData(), &end);
    if (end == value.getData()) throwException(u"Unable to convert string to double");
    return number;
}

void CommandLineParser::Element::addValue(const String& value)
{
    m_values.push_back(value);
}

void CommandLineParser::Element::copyValues(const Element& other)
{
    m_values = other.m_values;
}

CommandLineParser::OptionDefinition::OptionDefinition(const String& name, std::int32_t valueCount)
    : Element(name, -1), m_takes(valueCount)
{
}

CommandLineParser::OptionDefinition::~OptionDefinition() noexcept(false) = default;

CommandLineParser::CommandLineParser() = default;
CommandLineParser::CommandLineParser(const CommandLineParser& other) = default;
CommandLineParser& CommandLineParser::operator=(const CommandLineParser& other) = default;
CommandLineParser::~CommandLineParser() noexcept(false) = default;

void CommandLineParser::setIgnoreCase(bool ignoreCase)
{
    m_ignoreCase = ignoreCase;
}

void CommandLineParser::defineOption(const char16_t* name, std::int32_t valueCount,
                                     const char16_t* defaults)
{
    const String key(name);
    const Reference<OptionDefinition> definition(new OptionDefinition(key, valueCount));
    if (defaults != nullptr) {
        auto text = writableCopy(defaults);
        char16_t* position = text.data();
        while (const char16_t* const item = nextItem(position, u", ")) definition->addValue(item);
        definition->m_hasDefaults = true;
    }
    m_definitions.insert_or_assign(key, definition);
    m_definitionsAnyCase.insert_or_assign(key, definition);
}

void CommandLineParser::reset()
{
    m_positions.clear();
    m_positionsAnyCase.clear();
    m_parameters.clear();
    m_elements.clear();
}

void CommandLineParser::parse(const String& commandLine)
{
    auto text = writableCopy(commandLine.getData());
    reset();
    char16_t* position = text.data();
    while (const char16_t* const word = nextItem(position, u" ")) {
        if (ORVStrChrW(m_switchChars, *word) != nullptr) {
            addOption(word, position);
        } else {
            addParameter(word);
        }
    }
}

void CommandLineParser::parse(std::int32_t argc, char** argv)
{
    String commandLine;
    for (std::int32_t i = 0; i < argc; ++i) {
        const bool quoted = ORVStrChrA(argv[i], ' ') != nullptr;
        if (quoted) commandLine.append(u'"');
        commandLine.append(String(argv[i]));
        if (quoted) commandLine.append(u'"');
        commandLine.append(u' ');
    }
    parse(commandLine);
}

void CommandLineParser::addParameter(const char16_t* word)
{
    const std::int32_t index = sizeOf(m_elements);
    const Reference<Element> element(new Element(String(), index));
    element->addValue(word);
    m_elements.push_back(element);
    m_parameters.push_back(index);
}

void CommandLineParser::addOption(const char16_t* word, char16_t*& position)
{
    const char16_t* const equals = ORVStrChrW(word, u'=');
    const char16_t* name = word;
    const char16_t* const nameEnd = equals != nullptr ? equals : word + ORVStrLenW(word);
    while (name != nameEnd && ORVStrChrW(m_switchChars, *name) != nullptr) ++name;

    const std::int32_t index = sizeOf(m_elements);
    const String key(name, static_cast<std::int32_t>(nameEnd - name));
    const Reference<Element> element(new Element(key, index));
    const Reference<OptionDefinition> definition = getDefinition(key);
    if (equals != nullptr) {
        auto list = writableCopy(equals + 1);
        char16_t* item = list.data();
        while (const char16_t* const value = nextItem(item, u",")) element->addValue(value);
    } else if (definition && ORVStrChrW(m_switchChars, *position) != nullptr) {
        // The end of the text is found in the set too and counts as a switch.
        element->copyValues(*definition);
    } else if (definition) {
        takeValues(*element, definition->m_takes, position);
    }
    m_elements.push_back(element);
    m_positions.insert_or_assign(key, index);
    m_positionsAnyCase.insert_or_assign(key, index);
}

void CommandLineParser::takeValues(Element& element, std::int32_t count, char16_t*& position) const
{
    for (; count > 0; --count) {
        const char16_t* const word = nextItem(position, u" ");
        if (word == nullptr || ORVStrChrW(m_switchChars, *word) != nullptr) return;
        element.addValue(word);
    }
}

std::int32_t CommandLineParser::getElementCount() const
{
    return sizeOf(m_elements);
}

Reference<const CommandLineParser::Element> CommandLineParser::getElement(std::int32_t index) const
{
    return elementAt(m_elements, index);
}

std::int32_t CommandLineParser::getParameterCount() const
{
    return sizeOf(m_parameters);
}

Reference<const CommandLineParser::Element>
CommandLineParser::getParameter(std::int32_t index) const
{
    return getElement(elementAt(m_parameters, index));
}

bool CommandLineParser::isPresent(const char16_t* name) const
{
    return (m_ignoreCase ? m_positionsAnyCase : m_positions).contains(name);
}

Reference<const CommandLineParser::Element> CommandLineParser::getOption(const char16_t* name) const
{
    const Positions& positions = m_ignoreCase ? m_positionsAnyCase : m_positions;
    const auto found = positions.find(name);
    if (found != positions.end()) return getElement(found->second);
    const Reference<OptionDefinition> definition = getDefinition(name);
    if (definition && definition->m_hasDefaults) return definition;
    return nullptr;
}

Reference<CommandLineParser::OptionDefinition>
CommandLineParser::getDefinition(const String& name) const
{
    const Definitions& definitions = m_ignoreCase ? m_definitionsAnyCase : m_definitions;
    const auto found = definitions.find(name);
    return found == definitions.end() ? nullptr : found->second;
}

const CommandLineParser::Element&
CommandLineParser::optionOrThrow(const char16_t* name, Reference<const Element>& holder) const
{
    holder = getOption(name);
    if (!holder) throwException(u"Invalid vector index");
    return *holder;
}

String CommandLineParser::getValueString(const char16_t* name, std::int32_t index) const
{
    Reference<const Element> option;
    return optionOrThrow(name, option).getValueString(index);
}

std::int32_t CommandLineParser::getValueLong(const char16_t* name, std::int32_t index) const
{
    Reference<const Element> option;
    return optionOrThrow(name, option).getValueLong(index);
}

double CommandLineParser::getValueDouble(const char16_t* name, std::int32_t index) const
{
    Reference<const Element> option;
    return optionOrThrow(name, option).getValueDouble(index);
}

} // namespace orv::util
