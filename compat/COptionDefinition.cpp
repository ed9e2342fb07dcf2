#include "compat/COptionDefinition.h"

COptionDefinition::COptionDefinition(const orv::String& name, std::int32_t valueCount)
    : CORVCmdLineElement(name, -1), m_takes(valueCount)
{
}

COptionDefinition::~COptionDefinition() noexcept(false) = default;
