#include <benchmark/benchmark.h>

#include <thread>

int main(int argc, char** argv)
{
    // Some peers count without atomic operations while a process has never had a second thread.
    // Real hosts always have one.
    std::thread([] {}).join();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
