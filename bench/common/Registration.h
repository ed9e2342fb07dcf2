#pragma once

#include "bench/common/Case.h"
#include "orv/String.h"
#include "orv/exec/SharedLibrary.h"
#include "orv/quark/Component.h"

#include <cstdlib>
#include <string>

#include <unistd.h>

namespace orv::bench {

/// A component that is registered in a store of its own, as long as the object lives.
class Registration {
public:
    explicit Registration(const char* component) : m_file(dataFolder() + "/orv_bench_components.db")
    {
        removeStore();
        ::setenv("ORV_REGISTRY", m_file.c_str(), 1);
        const String path(component);
        exec::SharedLibrary library(path.getData());
        void* const entry = library.getSymbol(u"ORVRegisterServer");
        reinterpret_cast<decltype(&ORVRegisterServer)>(entry)(path.getData());
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() { removeStore(); }

private:
    void removeStore() const
    {
        for (const char* tail : {"", "-wal", "-shm"}) ::unlink((m_file + tail).c_str());
    }

    std::string m_file;
};

} // namespace orv::bench
