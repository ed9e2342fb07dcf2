#pragma once

#include "orv/Failure.h"
#include "platform/orvcore.h"

#include <exception>
#include <utility>

namespace orv::sync {

/// Owns a handle of orvcore, which `destroy` ends.
///
/// A failure to end it is thrown out of the destructor as ResultException, unless an exception is
/// on its way already, which then goes on alone.
template <auto destroy>
class Handle {
public:
    Handle() noexcept = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    ~Handle() noexcept(false)
    {
        if (m_handle == ORV_NO_HANDLE) return;
        const Result result = destroy(m_handle);
        if (failed(result) && std::uncaught_exceptions() == 0) throwResult(result);
    }

    /// The handle, ORV_NO_HANDLE when there is none.
    ORVHandle get() const noexcept { return m_handle; }

    /// Where an operation that creates the object puts its handle.
    ORVHandle* receive() noexcept { return &m_handle; }

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
};

} // namespace orv::sync
