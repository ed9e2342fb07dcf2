#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace orv::test {

/// A name for an object between processes that no other run of the tests has, in front of `rest`.
inline std::string uniqueName(const std::string& rest = "")
{
    static std::atomic<int> s_count{0};
    return "orvcl test " + std::to_string(::getpid()) + "." + std::to_string(++s_count) + rest;
}

/// Files that objects of that name have at this moment, found by the name that stands in them.
inline int filesOf(const std::string& name)
{
    int found = 0;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/shm", ignored)) {
        if (entry.path().filename().string().rfind("orv-", 0) != 0) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::string start(4096, '\0');
        file.read(start.data(), static_cast<std::streamsize>(start.size()));
        if (start.find(name.substr(0, 1000)) != std::string::npos) ++found;
    }
    return found;
}

} // namespace orv::test
