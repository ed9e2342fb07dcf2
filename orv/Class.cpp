#include "orv/Class.h"

#include "orv/Failure.h"

namespace orv {

Class::~Class() noexcept(false) = default;

const char16_t* Class::getName() const
{
    return m_name;
}

bool Class::isInstance(const Object& object) const
{
    return typeid(object) == *m_type;
}

Object* Class::createInstance() const
{
    if (m_factory == nullptr) throwIllegalAccess();
    return m_factory();
}

} // namespace orv
