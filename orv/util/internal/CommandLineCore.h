#pragma once

#include "orv/Failure.h"
#include "orv/String.h"
#include "platform/orvcore.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// \file
/// What the classes of command lines do, for the sources that instantiate it.

namespace orv::util::internal {

/// The next item at `position`, which moves behind it; null at the end. One in double quotes also
/// takes the delimiters behind it along.
inline char16_t* nextItem(char16_t*& position, const char16_t* delimiters)
{
    if (*position != u'"') return ORVStrTokW(&position, delimiters);
    char16_t* const item = ORVStrTokW(&position, u"\"");
    while (*position != u'\0' && ORVStrChrW(delimiters, *position) != nullptr) ++position;
    return item;
}

/// A text to cut items out of.
inline std::vector<char16_t> writableCopy(const char16_t* text)
{
    return {text, text + ORVStrLenW(text) + 1};
}

template <class List>
const auto& itemAt(const List& list, std::int32_t index)
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

/// The number that a value begins with.
inline std::int32_t longOf(const String& value)
{
    const char16_t* end = nullptr;
    const std::int32_t number = ORVStrToLW(value.getData(), &end, 0);
    if (end == value.getData()) throwException(u"Unable to convert string to long");
    return number;
}

inline double doubleOf(const String& value)
{
    const char16_t* end = nullptr;
    const double number = ORVStrToDW(value.getData(), &end);
    if (end == value.getData()) throwException(u"Unable to convert string to double");
    return number;
}

/// Parsing and questions of a class of command lines. `Line` names the classes of its elements and
/// definitions, which befriend this one as it does itself, and declares the fields used here.
///
/// Elements are given out as they stand in the line, which owns them.
template <class Line>
class CommandLineCore {
    using Element = typename Line::Element;
    using Definition = typename Line::OptionDefinition;
    using ElementPointer = typename decltype(Line::m_elements)::value_type;
    using DefinitionPointer = typename decltype(Line::m_definitions)::mapped_type;

public:
    static void defineOption(Line& line, const char16_t* name, std::int32_t valueCount,
                             const char16_t* defaults)
    {
        const String key(name);
        const DefinitionPointer definition(new Definition(key, valueCount));
        if (defaults != nullptr) {
            addItems(*definition, defaults, u", ");
            definition->m_hasDefaults = true;
        }
        line.m_definitions.insert_or_assign(key, definition);
        line.m_definitionsAnyCase.insert_or_assign(key, definition);
    }

    static void reset(Line& line)
    {
        line.m_positions.clear();
        line.m_positionsAnyCase.clear();
        line.m_parameters.clear();
        line.m_elements.clear();
    }

    static void parse(Line& line, const char16_t* commandLine)
    {
        auto text = writableCopy(commandLine);
        reset(line);
        char16_t* position = text.data();
        while (const char16_t* const word = nextItem(position, u" ")) {
            if (isSwitch(*word)) {
                addOption(line, word, position);
            } else {
                addParameter(line, word);
            }
        }
    }

    /// The words of a program as one text.
    static String join(std::int32_t argc, char** argv)
    {
        String commandLine;
        for (std::int32_t i = 0; i < argc; ++i) {
            const bool quoted = ORVStrChrA(argv[i], ' ') != nullptr;
            if (quoted) commandLine.append(u'"');
            commandLine.append(String(argv[i]));
            if (quoted) commandLine.append(u'"');
            commandLine.append(u' ');
        }
        return commandLine;
    }

    static Element* element(const Line& line, std::int32_t index)
    {
        return itemAt(line.m_elements, index).get();
    }

    static Element* parameter(const Line& line, std::int32_t index)
    {
        return element(line, itemAt(line.m_parameters, index));
    }

    static bool isPresent(const Line& line, const char16_t* name)
    {
        return positions(line).contains(name);
    }

    /// Null where the option is absent without defaults.
    static Element* option(const Line& line, const char16_t* name)
    {
        const auto found = positions(line).find(name);
        if (found != positions(line).end()) return element(line, found->second);
        Definition* const known = definition(line, name);
        return known != nullptr && known->m_hasDefaults ? known : nullptr;
    }

    static const Element& optionOrThrow(const Line& line, const char16_t* name)
    {
        const Element* const found = option(line, name);
        if (found == nullptr) throwException(u"Invalid vector index");
        return *found;
    }

    /// Null where the option was not defined.
    static Definition* definition(const Line& line, const String& name)
    {
        const auto& all = line.m_ignoreCase ? line.m_definitionsAnyCase : line.m_definitions;
        const auto found = all.find(name);
        return found == all.end() ? nullptr : found->second.get();
    }

private:
    /// The end of the text counts as a switch.
    static bool isSwitch(char16_t unit) { return ORVStrChrW(Line::m_switchChars, unit) != nullptr; }

    static const auto& positions(const Line& line)
    {
        return line.m_ignoreCase ? line.m_positionsAnyCase : line.m_positions;
    }

    static void addItems(Element& element, const char16_t* list, const char16_t* delimiters)
    {
        auto text = writableCopy(list);
        char16_t* position = text.data();
        while (const char16_t* const item = nextItem(position, delimiters)) element.addValue(item);
    }

    static void addParameter(Line& line, const char16_t* word)
    {
        const std::int32_t index = sizeOf(line.m_elements);
        const ElementPointer element(new Element(String(), index));
        element->addValue(word);
        line.m_elements.push_back(element);
        line.m_parameters.push_back(index);
    }

    static void addOption(Line& line, const char16_t* word, char16_t*& position)
    {
        const char16_t* const equals = ORVStrChrW(word, u'=');
        const char16_t* name = word;
        const char16_t* const nameEnd = equals != nullptr ? equals : word + ORVStrLenW(word);
        while (name != nameEnd && isSwitch(*name)) ++name;

        const std::int32_t index = sizeOf(line.m_elements);
        const String key(name, static_cast<std::int32_t>(nameEnd - name));
        const ElementPointer element(new Element(key, index));
        const Definition* const known = definition(line, key);
        if (equals != nullptr) {
            addItems(*element, equals + 1, u",");
        } else if (known != nullptr && isSwitch(*position)) {
            element->copyValues(*known);
        } else if (known != nullptr) {
            takeValues(*element, known->m_takes, position);
        }
        line.m_elements.push_back(element);
        line.m_positions.insert_or_assign(key, index);
        line.m_positionsAnyCase.insert_or_assign(key, index);
    }

    static void takeValues(Element& element, std::int32_t count, char16_t*& position)
    {
        for (; count > 0; --count) {
            const char16_t* const word = nextItem(position, u" ");
            if (word == nullptr || isSwitch(*word)) return;
            element.addValue(word);
        }
    }
};

} // namespace orv::util::internal
