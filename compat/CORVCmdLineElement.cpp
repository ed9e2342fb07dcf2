#include "compat/CORVCmdLineElement.h"

#include "orv/util/internal/CommandLineCore.h"

using orv::String;
namespace internal = orv::util::internal;

CORVCmdLineElement::CORVCmdLineElement(const String& name, std::int32_t position)
    : m_name(name), m_position(position)
{
}

CORVCmdLineElement::~CORVCmdLineElement() noexcept(false) = default;

String CORVCmdLineElement::getName() const
{
    return m_name;
}

std::int32_t CORVCmdLineElement::getPosition() const
{
    return m_position;
}

std::int32_t CORVCmdLineElement::getValueCount() const
{
    return internal::sizeOf(m_values);
}

String CORVCmdLineElement::getValueString(std::int32_t index) const
{
    return internal::itemAt(m_values, index);
}

std::int32_t CORVCmdLineElement::getValueLong(std::int32_t index) const
{
    return internal::longOf(internal::itemAt(m_values, index));
}

double CORVCmdLineElement::getValueDouble(std::int32_t index) const
{
    return internal::doubleOf(internal::itemAt(m_values, index));
}

void CORVCmdLineElement::addValue(const char16_t* value)
{
    m_values.emplace_back(value);
}

void CORVCmdLineElement::copyValues(const CORVCmdLineElement& other)
{
    m_values = other.m_values;
}
