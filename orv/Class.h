#pragma once

#include "orv/Object.h"

#include <typeinfo>

namespace orv {

class ClassManagerBase;

/// The run-time record of a class: its name, a test for its objects and its factory.
///
///     Reference<Object> text(Class::forName(u"CORVString")->createInstance());
///
/// Object::getClass() leads here from any object. Ownership: all records belong to the class
/// manager and end with the library's unload. Threads: any, as long as no host registers a class
/// at the same time.
class ORV_API Class final : public Object {
public:
    /// Makes a new object with count 0.
    using Factory = Object* (*)();

    /// The class registered under `name`. Throws ClassNotFoundException with that description.
    static const Class* forName(const char16_t* name);

    /// The class first registered for `type`. Throws ClassNotFoundException described by the
    /// type's readable name.
    static const Class* forType(const std::type_info* type);

    /// The name given at registration.
    virtual const char16_t* getName() const;

    /// Whether `object` is of exactly this class; an object of a derived class is not.
    virtual bool isInstance(const Object& object) const;

    /// A new object with count 0: put it into a Reference at once. Throws IllegalAccessException
    /// for a class without a factory.
    virtual Object* createInstance() const;

private:
    friend class ClassManagerBase;

    Class(const char16_t* name, const std::type_info* type, Factory factory) noexcept
        : m_name(name), m_type(type), m_factory(factory)
    {
    }
    ~Class() noexcept(false) override;

    const char16_t* m_name;
    const std::type_info* m_type;
    Factory m_factory;
};

} // namespace orv
