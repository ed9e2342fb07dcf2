#pragma once

#include "orv/ipc/Semaphore.h"
#include "orv/util/IniFile.h"

#include <exception>

namespace orv::util {

/// The frame of every operation on an IniFile: holds its semaphore for a scope, and begins with a
/// look at the file. A failure to give the semaphore back is thrown out of the destructor, unless
/// an exception is on its way already.
class IniFile::Hold {
public:
    explicit Hold(ipc::Semaphore* semaphore) : m_semaphore(semaphore)
    {
        if (m_semaphore != nullptr) m_semaphore->wait();
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() noexcept(false)
    {
        if (m_semaphore == nullptr) return;
        try {
            m_semaphore->signal();
        } catch (...) {
            if (std::uncaught_exceptions() == m_unwinding) throw;
        }
    }

private:
    ipc::Semaphore* m_semaphore;
    int m_unwinding = std::uncaught_exceptions();
};

class IniFile::Operation {
public:
    explicit Operation(IniFile& file) : m_hold(file.m_semaphore.get()) { file.checkAndUpdate(); }

private:
    Hold m_hold;
};

} // namespace orv::util
