#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <utility>

/// \file
/// How a benchmark names its cases. A case is one piece of work, done by the library ("orvcl") and
/// by its peers:
///
///     addCase("copy/64", "orvcl", [](benchmark::State& state) { ... });
///     addCase("copy/64", "qt", [](benchmark::State& state) { ... });
///
/// Peers named "limit_..." are bounds of the machine, as a memory copy, and "ref_..." plain loops
/// for comparison; they take no part in the choice of the best. A case that sets bytes is told as
/// a rate, one that sets items as time an item, any other as time an iteration: of the processor,
/// or of the clock with UseRealTime().

namespace orv::bench {

/// The name under which the library itself appears.
inline constexpr const char* LIBRARY = "orvcl";

template <class Body>
benchmark::internal::Benchmark* addCase(const std::string& testCase, const std::string& peer,
                                        Body&& body)
{
    return benchmark::RegisterBenchmark((testCase + "/" + peer).c_str(), std::forward<Body>(body));
}

/// The folder for files that a benchmark writes: ORV_BENCH_DATA, else /tmp.
inline std::string dataFolder()
{
    const char* const folder = std::getenv("ORV_BENCH_DATA");
    return folder != nullptr ? folder : "/tmp";
}

} // namespace orv::bench
