#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orv::test {

using Bytes = std::vector<signed char>;

inline std::int32_t sizeOf(const Bytes& bytes)
{
    return static_cast<std::int32_t>(bytes.size());
}

inline Bytes fromHex(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        const std::string pair(digits.substr(i, 2));
        bytes.push_back(static_cast<signed char>(std::stoi(pair, nullptr, 16)));
    }
    return bytes;
}

/// Bytes that follow no short pattern.
inline Bytes someBytes(std::size_t count)
{
    Bytes bytes(count);
    std::uint32_t state = 1;
    for (signed char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<signed char>(state >> 24);
    }
    return bytes;
}

} // namespace orv::test
