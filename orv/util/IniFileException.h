#pragma once

#include "orv/Exception.h"

#include <cstdint>

namespace orv::util {

/// What IniFile and its iterators cannot tell by a result.
class ORV_API IniFileException : public Exception {
public:
    /// What went wrong.
    enum TYPE : std::int32_t {
        TYPE_LOAD_FAILED = 0,      ///< the file cannot be opened; the description is its name
        TYPE_NO_MORE_ELEMENTS = 1, ///< next() behind the last name
        TYPE_NO_SUCH_SET = 2, ///< the keys of a set that is not there, which is the description
    };

    IniFileException(TYPE type, const String& description) : Exception(description), m_type(type) {}
    IniFileException(const IniFileException& other) = default;
    IniFileException& operator=(const IniFileException& other) = default;
    ~IniFileException() noexcept(false) override;

    /// What went wrong, as it was given at construction.
    TYPE GetType() const noexcept { return m_type; }

private:
    TYPE m_type;
};

} // namespace orv::util
