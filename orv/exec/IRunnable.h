#pragma once

#include "orv/IORVUnknown.h"

namespace orv::exec {

/// A piece of work that a Thread runs.
///
///     class Job : public quark::Implements<Object, exec::IRunnable> {
///         void* run() override { ... return nullptr; }
///     };
class ORV_API IRunnable : public IORVUnknown {
public:
    /// Does the work, on the new thread. The result is what Thread::join() gives. An exception ends
    /// the thread and is told to nobody.
    virtual void* run() = 0;

protected:
    ~IRunnable() = default;
};

} // namespace orv::exec
