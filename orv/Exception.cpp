#include "orv/Exception.h"

namespace orv {

Exception& Exception::operator=(const Exception& other)
{
    if (this != &other) m_description = other.m_description;
    return *this;
}

Exception::~Exception() noexcept(false) = default;

String Exception::getDescription() const
{
    return m_description;
}

Result Exception::getResult() const
{
    return E_FAIL;
}

ResultException& ResultException::operator=(const ResultException& other)
{
    if (this == &other) return *this;
    Exception::operator=(other);
    m_result = other.m_result;
    return *this;
}

ResultException::~ResultException() noexcept(false) = default;

Result ResultException::getResult() const
{
    return m_result;
}

OutOfMemoryException::~OutOfMemoryException() noexcept = default;

Result OutOfMemoryException::getResult() const
{
    return E_OUTOFMEMORY;
}

const char* OutOfMemoryException::what() const noexcept
{
    return "bad allocation";
}

ExternalException::~ExternalException() noexcept(false) = default;

} // namespace orv
