#pragma once

#include "orv/Exception.h"
#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <new>
#include <string>

namespace orv::test {

/// Runs operations with each of their allocations failing in turn, once and for ever.
///
///     test::OutOfMemory memory;
///     memory.check(
///         "append", [] { return String(u"abc"); },         // makes what is worked on
///         [](String& text) { text.append(u"def"); },       // the operation
///         [](const String& text, bool done) {              // what must hold afterwards
///             EXPECT_EQ(text, done ? u"abcdef" : u"abc");
///         });
///
/// The operation must end in std::bad_alloc (OutOfMemoryException is one) whenever an allocation
/// failed, unless it can do without: then `done` is true. At its end the object prints the number
/// of pairs of an operation and a failing allocation. One at a time in a process.
class OutOfMemory {
public:
    OutOfMemory() = default;
    OutOfMemory(const OutOfMemory&) = delete;
    OutOfMemory& operator=(const OutOfMemory&) = delete;
    ~OutOfMemory() { std::cout << "out of memory: " << m_pairs << " pairs\n"; }

    template <class Make, class Operation, class After>
    void check(const std::string& name, Make make, Operation operation, After after)
    {
        for (const bool forever : {false, true}) {
            for (std::uint64_t nth = 1; runOnce(name, nth, forever, make, operation, after);
                 ++nth) {
                ++m_pairs;
                ASSERT_LT(nth, 100000u) << name << " never gets by without a failure";
            }
        }
    }

    /// The same for an operation on nothing, as a constructor.
    template <class Operation>
    void check(const std::string& name, Operation operation)
    {
        struct Nothing {};
        check(
            name, [] { return Nothing(); }, [&](Nothing&) { operation(); },
            [](const Nothing&, bool) {});
    }

    /// Pairs so far.
    std::uint64_t pairs() const noexcept { return m_pairs; }

private:
    /// Whether the failing allocation was reached.
    template <class Make, class Operation, class After>
    static bool runOnce(const std::string& name, std::uint64_t nth, bool forever, Make& make,
                        Operation& operation, After& after)
    {
        SCOPED_TRACE(name + ", allocation " + std::to_string(nth) +
                     (forever ? " and all later ones" : ""));
        auto&& object = make();
        bool done = false;
        std::uint64_t allocations = 0;
        static_cast<void>(orvcore::failAllocation(nth, forever));
        try {
            operation(object);
            done = true;
            allocations = orvcore::failAllocation(0, false);
        } catch (const std::bad_alloc&) {
            allocations = orvcore::failAllocation(0, false);
            EXPECT_GE(allocations, nth) << "failed without need";
        } catch (...) {
            allocations = orvcore::failAllocation(0, false);
            ADD_FAILURE() << "ended in another exception than std::bad_alloc";
        }
        after(object, done);
        return allocations >= nth;
    }

    std::uint64_t m_pairs = 0;
};

} // namespace orv::test
