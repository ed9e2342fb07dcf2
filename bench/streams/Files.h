#pragma once

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// \file
/// The files that the stream cases read and write: log text, in the page cache.

namespace orv::bench {

constexpr std::int64_t READ_SIZE = 64 * MIB;
constexpr std::int64_t WRITE_SIZE = 16 * MIB;

/// A file of READ_SIZE bytes.
inline const std::string& inputFile()
{
    static const std::string path = [] {
        std::string name = dataFolder() + "/orv_bench_input.txt";
        std::error_code ignored;
        if (std::filesystem::file_size(name, ignored) != READ_SIZE) {
            std::ofstream file(name, std::ios::binary);
            for (int i = 0; i < 64; ++i) file << corpora()[0].utf8;
        }
        return name;
    }();
    return path;
}

inline std::string outputFile()
{
    return dataFolder() + "/orv_bench_output.txt";
}

/// The lines of 1 MiB of text, with their ends.
inline const std::vector<std::u16string>& unitLines()
{
    static const std::vector<std::u16string> lines = [] {
        std::vector<std::u16string> all;
        std::u16string line;
        for (const char16_t unit : corpora()[0].utf16) {
            line += unit;
            if (unit != u'\n') continue;
            all.push_back(line);
            line.clear();
        }
        if (!line.empty()) all.push_back(line);
        return all;
    }();
    return lines;
}

/// `body` reads the whole file and returns how many units came out.
template <class Body>
void readCase(const std::string& testCase, const char* peer, Body body)
{
    addCase(testCase + "/64MiB", peer, [body](benchmark::State& state) {
        inputFile();
        for (auto _ : state) {
            const std::int64_t units = body();
            if (units < READ_SIZE * 9 / 10) state.SkipWithError("short read");
        }
        state.SetBytesProcessed(state.iterations() * READ_SIZE);
    });
}

/// `body` writes a file of WRITE_SIZE bytes.
template <class Body>
void writeCase(const std::string& testCase, const char* peer, Body body)
{
    addCase(testCase + "/16MiB", peer, [body](benchmark::State& state) {
        const std::string path = outputFile();
        for (auto _ : state) {
            state.PauseTiming();
            std::filesystem::remove(path);
            state.ResumeTiming();
            body(path);
        }
        if (std::filesystem::file_size(path) != WRITE_SIZE) state.SkipWithError("wrong size");
        std::filesystem::remove(path);
        state.SetBytesProcessed(state.iterations() * WRITE_SIZE);
    });
}

} // namespace orv::bench
