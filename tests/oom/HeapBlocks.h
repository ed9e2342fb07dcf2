#pragma once

#include <cstdint>

namespace orv::test {

/// Blocks of the C heap that the whole process holds, whoever took them: the difference between two
/// calls is what was left behind in between.
std::int64_t heapBlocks();

} // namespace orv::test
