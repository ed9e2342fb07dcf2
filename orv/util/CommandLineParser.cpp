#include "orv/util/CommandLineParser.h"

#include "orv/util/internal/CommandLineCore.h"

namespace orv::util {

using Core = internal::CommandLineCore<CommandLineParser>;

constinit const char16_t* const CommandLineParser::m_switchChars = u"-/";

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
    return internal::sizeOf(m_values);
}

String CommandLineParser::Element::getValueString(std::int32_t index) const
{
    return internal::itemAt(m_values, index);
}

std::int32_t CommandLineParser::Element::getValueLong(std::int32_t index) const
{
    return internal::longOf(internal::itemAt(m_values, index));
}

double CommandLineParser::Element::getValueDouble(std::int32_t index) const
{
    return internal::doubleOf(internal::itemAt(m_values, index));
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
    Core::defineOption(*this, name, valueCount, defaults);
}

void CommandLineParser::reset()
{
    Core::reset(*this);
}

void CommandLineParser::parse(const String& commandLine)
{
    Core::parse(*this, commandLine.getData());
}

void CommandLineParser::parse(std::int32_t argc, char** argv)
{
    parse(Core::join(argc, argv));
}

std::int32_t CommandLineParser::getElementCount() const
{
    return internal::sizeOf(m_elements);
}

Reference<const CommandLineParser::Element> CommandLineParser::getElement(std::int32_t index) const
{
    return Core::element(*this, index);
}

std::int32_t CommandLineParser::getParameterCount() const
{
    return internal::sizeOf(m_parameters);
}

Reference<const CommandLineParser::Element>
CommandLineParser::getParameter(std::int32_t index) const
{
    return Core::parameter(*this, index);
}

bool CommandLineParser::isPresent(const char16_t* name) const
{
    return Core::isPresent(*this, name);
}

Reference<const CommandLineParser::Element> CommandLineParser::getOption(const char16_t* name) const
{
    return Core::option(*this, name);
}

Reference<CommandLineParser::OptionDefinition>
CommandLineParser::getDefinition(const String& name) const
{
    return Core::definition(*this, name);
}

String CommandLineParser::getValueString(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueString(index);
}

std::int32_t CommandLineParser::getValueLong(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueLong(index);
}

double CommandLineParser::getValueDouble(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueDouble(index);
}

} // namespace orv::util
