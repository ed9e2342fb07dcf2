#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace orv::test {

/// Sets a variable of the environment, or removes it for null, and puts it back at the end.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : m_name(name)
    {
        if (const char* before = std::getenv(name)) m_before = before;
        set(value);
    }
    ~ScopedVariable() { set(m_before ? m_before->c_str() : nullptr); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

    void set(const char* value)
    {
        if (value != nullptr) {
            setenv(m_name.c_str(), value, 1);
        } else {
            unsetenv(m_name.c_str());
        }
    }

private:
    std::string m_name;
    std::optional<std::string> m_before;
};

} // namespace orv::test
