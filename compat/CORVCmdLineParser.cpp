#include "compat/CORVCmdLineParser.h"

#include "orv/util/internal/CommandLineCore.h"

#include <limits>

using orv::String;

using Core = orv::util::internal::CommandLineCore<CORVCmdLineParser>;

constinit const char16_t* const CORVCmdLineParser::m_switchChars = u"-/";

namespace {

template <class List>
std::int32_t countOf(const List& list)
{
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    if (list.size() > std::size_t{most}) orv::throwException(u"Invalid vector size");
    return static_cast<std::int32_t>(list.size());
}

} // namespace

CORVCmdLineParser::CORVCmdLineParser() = default;
CORVCmdLineParser::CORVCmdLineParser(const CORVCmdLineParser& other) = default;
CORVCmdLineParser& CORVCmdLineParser::operator=(const CORVCmdLineParser& other) = default;
CORVCmdLineParser::~CORVCmdLineParser() noexcept(false) = default;

void CORVCmdLineParser::setIgnoreCase(bool ignoreCase)
{
    m_ignoreCase = ignoreCase;
}

void CORVCmdLineParser::defineOption(const char16_t* name, std::int32_t valueCount,
                                     const char16_t* defaults)
{
    Core::defineOption(*this, name, valueCount, defaults);
}

void CORVCmdLineParser::reset()
{
    Core::reset(*this);
}

void CORVCmdLineParser::parse(const char16_t* commandLine)
{
    Core::parse(*this, commandLine);
}

void CORVCmdLineParser::parse(std::int32_t argc, char** argv)
{
    parse(Core::join(argc, argv).getData());
}

std::int32_t CORVCmdLineParser::getElementCount() const
{
    return countOf(m_elements);
}

CORVSmartPtr<const CORVCmdLineElement> CORVCmdLineParser::getElement(std::int32_t index) const
{
    return Core::element(*this, index);
}

std::int32_t CORVCmdLineParser::getParameterCount() const
{
    return countOf(m_parameters);
}

CORVSmartPtr<const CORVCmdLineElement> CORVCmdLineParser::getParameter(std::int32_t index) const
{
    return Core::parameter(*this, index);
}

bool CORVCmdLineParser::isPresent(const char16_t* name) const
{
    return Core::isPresent(*this, name);
}

CORVSmartPtr<const CORVCmdLineElement> CORVCmdLineParser::getOption(const char16_t* name) const
{
    return Core::option(*this, name);
}

CORVSmartPtr<COptionDefinition> CORVCmdLineParser::getDefinition(const String& name) const
{
    return Core::definition(*this, name);
}

String CORVCmdLineParser::getValueString(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueString(index);
}

std::int32_t CORVCmdLineParser::getValueLong(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueLong(index);
}

double CORVCmdLineParser::getValueDouble(const char16_t* name, std::int32_t index) const
{
    return Core::optionOrThrow(*this, name).getValueDouble(index);
}
