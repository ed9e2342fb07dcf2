#include "orv/io/FileOutputStream.h"
#include "orv/io/OutputStreamWriter.h"
#include "orv/log/AsyncProcessor.h"
#include "orv/log/BasicLogWriter.h"
#include "orv/log/Logger.h"
#include "orv/log/MultiProcessor.h"
#include "platform/files.h"

#include "bench/logging/Peers.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <iterator>
#include <thread>

#include <malloc.h>

#ifdef ORV_BENCH_LOG4CXX
namespace orv::bench {
IMPLEMENT_LOG4CXX_OBJECT(Log4cxxEnd)
}
#endif

// An entry is sequence, level, 40 characters of text, thread and time stamp, written alike by all
// on three terms: into memory, handed to the system each, synced to the disk each. "burst" calls as
// fast as it goes, "paced" once in 50 us, by a producer that stays awake in between.
//
// The time is from the first call until the last entry has reached the end. Counters: call_p50_ns
// and so on, what one call costs its thread; accepted_per_s, calls returned; background_cpu, what
// all other threads of the process took, in processors. queued_entry: memory of an entry that
// waits.

namespace orv::bench {
namespace {

using Clock = std::chrono::steady_clock;

class MemoryStream : public io::OutputStream {
public:
    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override
    {
        m_end.put(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(n));
    }
    long entries() const noexcept { return m_end.entries(); }

private:
    End m_end{Term::Memory, ""};
};

/// A file whose flush() is that of the disk, whatever ORV_FLUSH says for the rest of the process.
class SyncedFile : public io::FileOutputStream {
public:
    using FileOutputStream::FileOutputStream;
    void flush() override { ::fdatasync(orvcore::descriptorFromFileHandle(getHandle())); }
};

Reference<io::OutputStream> openEnd(const Plan& plan)
{
    const String path(plan.file.c_str());
    if (plan.term == Term::Memory) return makeReference<MemoryStream>();
    if (plan.term == Term::Synced) return makeReference<SyncedFile>(path, SyncedFile::TRUNC);
    return makeReference<io::FileOutputStream>(path, io::FileOutputStream::TRUNC);
}

/// Knows how many entries have been written, by whatever thread.
class Counting : public ::orv::quark::Implements<Object, log::ILogProcessor> {
public:
    explicit Counting(Reference<log::ILogProcessor> target) : m_target(std::move(target)) {}
    void process(const log::ILogEntry* entry) override
    {
        m_target->process(entry);
        m_count.store(m_count.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }
    long count() const noexcept { return m_count.load(std::memory_order_acquire); }

private:
    Reference<log::ILogProcessor> m_target;
    std::atomic<long> m_count{0};
};

class Orv {
public:
    explicit Orv(const Plan& plan) : m_logger(log::Logger::create())
    {
        const Reference<io::OutputStream> end = openEnd(plan);
        m_memory = dynamic_cast<MemoryStream*>(end.get());
        const auto text = makeReference<io::OutputStreamWriter>(end.get(), u"UTF-8", 0x4000);
        m_writer = makeReference<Counting>(log::BasicLogWriter::create(text.get()));
        for (const char16_t* field : {u"sequence", u"thread", u"timestamp"}) {
            m_logger->enableField(field, true);
        }
        if (plan.async) {
            // At the stop the thread and its stopper may come to the writer at once.
            const auto oneAtATime = log::MultiProcessor::create();
            oneAtATime->addProcessor(m_writer.get());
            m_logger->addProcessor(log::AsyncProcessor::create(oneAtATime.get(), 1).get());
        } else {
            m_logger->addProcessor(m_writer.get());
        }
    }
    void log() { m_logger->log(3, m_text); }
    long finish(long entries)
    {
        m_logger = nullptr;
        // The thread may still have the last one.
        while (m_writer->count() < entries) std::this_thread::yield();
        return m_memory ? m_memory->entries() : -1;
    }

private:
    const String m_text{TEXT};
    Reference<log::Logger> m_logger;
    Reference<Counting> m_writer;
    Reference<MemoryStream> m_memory;
};

/// One run of `producers` threads.
struct Load {
    int producers;
    long entries;
    long pauseMicroseconds;
};

double cpuSeconds(clockid_t clock)
{
    timespec time{};
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

struct Taken {
    std::vector<std::uint32_t> nanoseconds; ///< of each call
    double cpu = 0;                         ///< seconds of the producer
};

template <class Peer>
void produce(Peer& peer, const Load& load, Taken& taken, std::atomic<int>& ready)
{
    ready.fetch_add(1);
    while (ready.load() < load.producers) std::this_thread::yield();
    const double start = cpuSeconds(CLOCK_THREAD_CPUTIME_ID);
    auto before = Clock::now();
    for (long i = load.entries / load.producers; i > 0; --i) {
        peer.log();
        const auto after = Clock::now();
        taken.nanoseconds.push_back(static_cast<std::uint32_t>((after - before).count()));
        const auto next = before + std::chrono::microseconds(load.pauseMicroseconds);
        before = after;
        while (load.pauseMicroseconds > 0 && before < next) before = Clock::now();
    }
    taken.cpu = cpuSeconds(CLOCK_THREAD_CPUTIME_ID) - start;
}

long entriesInFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    long entries = 0;
    for (std::string line; std::getline(file, line);) {
        if (line == "-------------------------") ++entries;
    }
    return entries;
}

double percentile(const std::vector<std::uint32_t>& sorted, double part)
{
    return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

void tellCalls(benchmark::State& state, const std::vector<Taken>& taken)
{
    std::vector<std::uint32_t> all;
    for (const Taken& one : taken) {
        all.insert(all.end(), one.nanoseconds.begin(), one.nanoseconds.end());
    }
    std::sort(all.begin(), all.end());
    state.counters["call_p50_ns"] = percentile(all, 0.5);
    state.counters["call_p99_ns"] = percentile(all, 0.99);
    state.counters["call_p999_ns"] = percentile(all, 0.999);
}

template <class Peer>
void run(benchmark::State& state, const Plan& plan, const Load& load)
{
    std::vector<Taken> taken(static_cast<std::size_t>(load.producers));
    for (Taken& one : taken) one.nanoseconds.reserve(static_cast<std::size_t>(load.entries));
    for (auto _ : state) {
        ::unlink(plan.file.c_str());
        for (Taken& one : taken) one.nanoseconds.clear();
        Peer peer(plan);
        std::atomic<int> ready{0};
        const double cpuBefore = cpuSeconds(CLOCK_PROCESS_CPUTIME_ID);
        const auto start = Clock::now();
        {
            std::vector<std::jthread> others;
            for (std::size_t i = 1; i < taken.size(); ++i) {
                others.emplace_back([&, i] { produce(peer, load, taken[i], ready); });
            }
            produce(peer, load, taken[0], ready);
        }
        const auto accepted = Clock::now();
        const long counted = peer.finish(load.entries);
        const std::chrono::duration<double> passed = Clock::now() - start;
        state.SetIterationTime(passed.count());
        double background = cpuSeconds(CLOCK_PROCESS_CPUTIME_ID) - cpuBefore;
        for (const Taken& one : taken) background -= one.cpu;
        state.counters["background_cpu"] = background / passed.count();
        state.counters["accepted_per_s"] = static_cast<double>(load.entries) /
                                           std::chrono::duration<double>(accepted - start).count();
        if ((counted < 0 ? entriesInFile(plan.file) : counted) != load.entries) {
            state.SkipWithError("entries are missing");
        }
    }
    tellCalls(state, taken);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * load.entries);
    ::unlink(plan.file.c_str());
}

std::string caseName(const Plan& plan, const Load& load)
{
    const char* const terms[] = {"memory", "kernel", "synced"};
    return std::string(terms[static_cast<std::size_t>(plan.term)]) +
           (plan.async ? "_async_" : "_sync_") + std::to_string(load.producers) +
           (load.producers == 1 ? "_producer_" : "_producers_") +
           (load.pauseMicroseconds > 0 ? "paced" : "burst");
}

template <class Peer>
void addRun(const char* peer, Plan plan, const Load& load)
{
    plan.file = dataFolder() + "/orv_bench_log_" + peer + ".txt";
    addCase(caseName(plan, load), peer,
            [=](benchmark::State& state) { run<Peer>(state, plan, load); })
        ->UseManualTime()
        ->Iterations(1);
}

void addPeers(const Plan& plan, const Load& load)
{
    addRun<Orv>(LIBRARY, plan, load);
#ifdef ORV_BENCH_SPDLOG
    addRun<Spdlog>("spdlog", plan, load);
#endif
#ifdef ORV_BENCH_POCO
    addRun<PocoLogger>("poco", plan, load);
#endif
#ifdef ORV_BENCH_LOG4CXX
    addRun<Log4cxx>("log4cxx", plan, load);
#endif
}

/// Memory from malloc, in bytes.
double memoryInUse()
{
    return static_cast<double>(::mallinfo2().uordblks);
}

void measureQueuedEntry(benchmark::State& state)
{
    constexpr int entries = 100'000;
    for (auto _ : state) {
        const auto logger = log::Logger::create();
        const auto sink = log::MultiProcessor::create();
        for (const char16_t* field : {u"sequence", u"thread", u"timestamp"}) {
            logger->enableField(field, true);
        }
        logger->addProcessor(log::AsyncProcessor::create(sink.get(), 0).get());
        const String text(TEXT);
        const double before = memoryInUse();
        for (int i = 0; i < entries; ++i) logger->log(3, text);
        state.counters["bytes"] = (memoryInUse() - before) / entries;
    }
}

const bool registered = [] {
    ::setenv("ORV_FLUSH", "process", 1);
    constexpr long many = 100'000;
    for (const Term term : {Term::Memory, Term::Kernel}) {
        for (const bool async : {false, true}) {
            for (const int producers : {1, 2}) addPeers({term, async, ""}, {producers, many, 0});
            addPeers({term, async, ""}, {1, 5000, 50});
        }
    }
    for (const bool async : {false, true}) addPeers({Term::Synced, async, ""}, {1, 500, 0});
    addCase("queued_entry", LIBRARY, measureQueuedEntry)->Iterations(1);
    return true;
}();

} // namespace
} // namespace orv::bench
