#include "orv/sync/LockObject.h"

namespace orv::sync {

Object::Object(const Object& other) noexcept : ::orv::Object(other) {}

Object& Object::operator=(const Object&) noexcept
{
    return *this;
}

Object::~Object() noexcept(false) = default;

LockObject::LockObject(const LockObject& other) noexcept : Object(other) {}

LockObject& LockObject::operator=(const LockObject&) noexcept
{
    return *this;
}

LockObject::~LockObject() noexcept(false) = default;

} // namespace orv::sync
