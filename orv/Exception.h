#pragma once

#include "orv/String.h"

#include <new>

/// The platform's record of a hardware fault. Opaque to the library, which only carries it.
struct _EXCEPTION_POINTERS;

namespace orv {

/// The root of the exceptions: a description and the result code that stands for the failure at a
/// binary interface.
///
/// Thrown by value, caught by reference. The description is empty unless it was given; no class
/// builds one from a result. Copies share the text, assignment copies it.
class ORV_API Exception : public Object {
public:
    Exception() = default;
    Exception(const Exception& other) : Object(), m_description(other.m_description) {}
    Exception(const String& description) : m_description(description) {}
    Exception& operator=(const Exception& other);
    ~Exception() noexcept(false) override;

    /// The text given at construction, shared.
    virtual String getDescription() const;

    /// E_FAIL, but for the classes that say otherwise.
    virtual Result getResult() const;

private:
    String m_description;
};

/// A failed result of an interface or of the platform, as an exception.
class ORV_API ResultException : public Exception {
public:
    ResultException() = default;
    explicit ResultException(Result result) : m_result(result) {}
    ResultException(Result result, const String& description)
        : Exception(description), m_result(result)
    {
    }
    ResultException(const ResultException& other) = default;
    ResultException& operator=(const ResultException& other);
    ~ResultException() noexcept(false) override;

    /// The result given at construction, E_FAIL without one.
    Result getResult() const override;

private:
    Result m_result = E_FAIL;
};

/// Memory has run out. Can be caught as Exception or as std::bad_alloc; either way the result is
/// E_OUTOFMEMORY. Throwing it needs no memory of the library's.
class ORV_API OutOfMemoryException : public Exception, public std::bad_alloc {
public:
    OutOfMemoryException() = default;
    OutOfMemoryException(const OutOfMemoryException& other) = default;
    OutOfMemoryException& operator=(const OutOfMemoryException& other) = default;
    ~OutOfMemoryException() noexcept override;

    /// E_OUTOFMEMORY.
    Result getResult() const override;

    /// "bad allocation".
    const char* what() const noexcept override;
};

/// A fault of the hardware or of the operating system, for hosts that translate such faults into
/// exceptions. The library translates none itself.
class ORV_API ExternalException : public Exception {
public:
    /// Carries `record`, which belongs to the caller.
    explicit ExternalException(_EXCEPTION_POINTERS* record) : m_record(record) {}
    ExternalException(const ExternalException& other) = default;
    ExternalException& operator=(const ExternalException& other) = default;
    ~ExternalException() noexcept(false) override;

    /// The record given at construction, or null.
    _EXCEPTION_POINTERS* getExceptionPointers() const noexcept { return m_record; }

protected:
    ExternalException() = default;

private:
    _EXCEPTION_POINTERS* m_record = nullptr;
};

} // namespace orv
