#include "orv/ClassManager.h"

#include "orv/Failure.h"
#include "orv/Reference.h"
#include "orv/String.h"

#include <cstdlib>
#include <cxxabi.h>
#include <map>

template class orv::util::Singleton<orv::ClassManagerBase, &orv::g_pGlobalLock>;

namespace orv {

constinit sync::LockObject* g_pGlobalLock = nullptr;

namespace {

struct NameOrder {
    bool operator()(const char16_t* a, const char16_t* b) const { return ORVStrCmpW(a, b) < 0; }
};

struct TypeOrder {
    bool operator()(const std::type_info* a, const std::type_info* b) const
    {
        return a->before(*b);
    }
};

String readableName(const std::type_info& type)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return text != nullptr ? text.get() : type.name();
}

} // namespace

struct ClassManagerBase::Body {
    std::map<const char16_t*, Reference<Class>, NameOrder> byName;
    std::map<const std::type_info*, Reference<Class>, TypeOrder> byType;
};

ClassManagerBase::ClassManagerBase() : m_body(std::make_unique<Body>()) {}

ClassManagerBase::~ClassManagerBase() = default;

const Class* ClassManagerBase::lookupName(const char16_t* name) const
{
    const auto found = m_body->byName.find(name);
    if (found == m_body->byName.end()) throwClassNotFound(name);
    return found->second.get();
}

const Class* ClassManagerBase::lookupType(const std::type_info* type) const
{
    const auto found = m_body->byType.find(type);
    if (found == m_body->byType.end()) throwClassNotFound(readableName(*type).getData());
    return found->second.get();
}

void ClassManagerBase::registerClass(const char16_t* name, const std::type_info* type,
                                     Class::Factory factory)
{
    if (m_body->byName.contains(name)) return;
    const Reference<Class> record(new Class(name, type, factory));
    m_body->byName.emplace(name, record);
    m_body->byType.emplace(type, record);
}

const Class* Class::forName(const char16_t* name)
{
    return ClassManager::getInstance()->lookupName(name);
}

const Class* Class::forType(const std::type_info* type)
{
    return ClassManager::getInstance()->lookupType(type);
}

} // namespace orv
