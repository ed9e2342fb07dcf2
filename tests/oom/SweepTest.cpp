#include "Sweep.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <iostream>

#include <sys/wait.h>
#include <unistd.h>

namespace orv {
namespace {

using test::Ending;
using test::Outcome;
using test::Promise;
using test::Row;

constexpr std::uint64_t MOST_ALLOCATIONS = 5000; // of one operation

std::vector<Row> allRows()
{
    std::vector<Row> rows;
    for (const auto& part :
         {test::bufferRows(), test::textRows(), test::converterRows(), test::numberRows(),
          test::collectionRows(), test::objectRows(), test::streamRows()}) {
        rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
}

std::string nameOf(const Row& row, std::uint64_t nth, bool forever)
{
    return row.name + ", allocation " + std::to_string(nth) + (forever ? " and all later" : "");
}

/// Prints the number of pairs of an operation and an allocation of it that failed.
void report(std::size_t operations, std::uint64_t pairs)
{
    testing::Test::RecordProperty("operations", static_cast<int>(operations));
    testing::Test::RecordProperty("pairs", static_cast<int>(pairs));
    std::cout << "out of memory: " << pairs << " pairs of " << operations << " operations\n";
}

/// What is wrong with a run whose operation leaves `whenDone` where it succeeds; empty if nothing.
std::string faultOf(const Row& row, const Outcome& run, const std::string& whenDone,
                    std::uint64_t nth)
{
    if (run.ending == Ending::Otherwise) return "ended otherwise than by lack of memory";
    if (run.ending == Ending::Done) {
        return run.after == whenDone ? "" : "done, but led to another state";
    }
    if (run.allocations < nth) return "failed without need";
    if (run.secondEnding != Ending::Done) return "cannot be done afterwards";
    const bool isPart = run.after.starts_with(run.before) && whenDone.starts_with(run.after);
    const bool isPartial = row.promise == Promise::Partial;
    if (isPartial ? !isPart : run.after != run.before) return "failed and left another state";
    if (!isPartial && run.afterSecond != whenDone) return "led later to another state";
    return "";
}

/// Runs in a process of its own, where the operation has never been run; false where there is no
/// need to go on, the operation having fewer allocations or a fault.
bool runFresh(const Row& row, std::uint64_t nth) noexcept
{
    constexpr int notReached = 7;
    const pid_t child = ::fork();
    if (child == 0) {
        ::alarm(60); // ends a run that hangs
        const Outcome outcome = row.run(nth, false);
        const Outcome reference = row.run(0, false);
        const std::string fault = faultOf(row, outcome, reference.after, nth);
        if (!fault.empty()) std::cerr << nameOf(row, nth, false) << ": " << fault << std::endl;
        ::_exit(!fault.empty() ? 1 : outcome.allocations < nth ? notReached : 0);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == notReached) return false;
    EXPECT_EQ(status, 0);
    return status == 0;
}

// To be the first: what the library makes on first use is not there yet.
TEST(OutOfMemory, onFirstUseIsGotOver)
{
    const std::vector<Row> rows = allRows();
    std::uint64_t pairs = 0;
    for (const Row& row : rows) {
        for (std::uint64_t nth = 1; nth < MOST_ALLOCATIONS; ++nth, ++pairs) {
            SCOPED_TRACE(nameOf(row, nth, false));
            if (!runFresh(row, nth)) break;
        }
    }
    report(rows.size(), pairs);
}

// What is lost on the way, the leak check of the address sanitizer finds at the end.
TEST(OutOfMemory, leavesObjectsAsTheyWereAndNothingBehind)
{
    const std::vector<Row> rows = allRows();
    std::uint64_t pairs = 0;
    for (const Row& row : rows) {
        if (row.promise == Promise::OnlyFresh) continue;
        const Outcome reference = row.run(0, false);
        ASSERT_EQ(reference.ending, Ending::Done) << row.name;
        EXPECT_GT(reference.allocations, 0u) << row.name << " needs no memory";
        for (const bool forever : {false, true}) {
            std::uint64_t nth = 0;
            for (bool reached = true; reached && nth < MOST_ALLOCATIONS; ++pairs) {
                const std::string name = nameOf(row, ++nth, forever);
                const std::ptrdiff_t files = test::openDescriptors();
                const Outcome run = row.run(nth, forever);
                reached = run.allocations >= nth;
                EXPECT_EQ(faultOf(row, run, reference.after, nth), "") << name;
                EXPECT_EQ(test::openDescriptors(), files) << name;
            }
            --pairs;
            EXPECT_LT(nth, MOST_ALLOCATIONS) << row.name;
        }
    }
    report(rows.size(), pairs);
}

} // namespace
} // namespace orv
