#pragma once

#include "orv/Reference.h"
#include "orv/Result.h"
#include "orv/String.h"
#include "platform/orvcore.h"
#include "tests/support/Text.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

/// \file
/// Operations with one of their allocations failing. A row makes an object while memory lasts,
/// works on it while an allocation fails, and shows the state of the object before and after. An
/// operation that gives a Result is one of an interface, which must not throw.
///
///     row("append", [] { return String(u"abc"); }, [](String& text) { text.append(u"def"); })
///     product("copy", [] { return String(u"abc"); })     // a row that makes something of nothing
///
/// SweepTest.cpp holds each row against what is promised, for every one of its allocations.

namespace orv::test {

enum class Ending {
    Done,
    OutOfMemory,
    Otherwise, ///< with another failure, or by throwing from an interface
};

template <class Operation>
Ending endingOf(const Operation& operation)
{
    Result returned = S_OK;
    const Result thrown = resultOf([&] {
        if constexpr (std::is_same_v<decltype(operation()), Result>) {
            returned = operation();
        } else {
            operation();
        }
    });
    const bool isInterface = std::is_same_v<decltype(operation()), Result>;
    const Result result = isInterface ? returned : thrown;
    if (isInterface && failed(thrown)) return Ending::Otherwise;
    if (result == E_OUTOFMEMORY) return Ending::OutOfMemory;
    return failed(result) ? Ending::Otherwise : Ending::Done;
}

/// The state of an object, as text. A class of the tests says it by state(), which may consume.
template <class T>
std::string stateOf(T&& object)
{
    using Kind = std::remove_cvref_t<T>;
    if constexpr (requires { object.state(); }) {
        return object.state();
    } else if constexpr (std::derived_from<Kind, String>) {
        return readable(units(object));
    } else if constexpr (requires { typename Kind::Unit; }) { // a buffer
        const auto* const bytes = reinterpret_cast<const char*>(object.getData());
        const auto length = static_cast<std::size_t>(object.getLength());
        return std::string(bytes, length * sizeof(typename Kind::Unit));
    } else if constexpr (std::derived_from<Kind, Object>) {
        return stateOf(object.toString());
    } else if constexpr (requires { *object; }) { // a pointer of some kind
        return object ? stateOf(*object) : "nothing";
    } else {
        return std::to_string(object);
    }
}

struct Outcome {
    Ending ending = Ending::Done;
    std::uint64_t allocations = 0; ///< of the operation
    std::string before;
    std::string after;
    Ending secondEnding = Ending::Done;
    std::string afterSecond; ///< where the first one ran out: the same again with memory
};

enum class Promise {
    Unchanged, ///< without memory
    Partial,   ///< a part may have been done, never anything else than the beginning
    OnlyFresh, ///< unchanged, but doing it a second time in a process is another thing
};

struct Row {
    std::string name;
    /// Runs the operation with its `nth` allocation failing, and with `forever` all later ones; 0
    /// lets none fail.
    std::function<Outcome(std::uint64_t nth, bool forever)> run;
    Promise promise;
};

/// Runs `operation` within the countdown and returns the number of its allocations.
template <class Operation>
std::uint64_t countDown(std::uint64_t nth, bool forever, Ending& ending, Operation operation)
{
    constexpr auto never = std::numeric_limits<std::uint64_t>::max();
    static_cast<void>(orvcore::failAllocation(nth == 0 ? never : nth, forever));
    ending = endingOf(operation);
    return orvcore::failAllocation(0, false);
}

template <class Make, class Operation>
Row row(std::string name, Make make, Operation operation, Promise promise = Promise::Unchanged)
{
    return {std::move(name),
            [=](std::uint64_t nth, bool forever) {
                Outcome outcome;
                auto object = make();
                const auto operate = [&] { return operation(object); };
                outcome.allocations = countDown(nth, forever, outcome.ending, operate);
                if (outcome.ending != Ending::OutOfMemory) {
                    outcome.after = stateOf(object);
                    return outcome;
                }
                outcome.secondEnding = endingOf(operate);
                outcome.afterSecond = stateOf(object);

                // To look may change the object, so others are looked at.
                auto left = make();
                Ending ending{};
                countDown(nth, forever, ending, [&] { return operation(left); });
                auto untouched = make();
                outcome.before = stateOf(untouched);
                outcome.after = ending == Ending::OutOfMemory ? stateOf(left) : outcome.before;
                return outcome;
            },
            promise};
}

template <class Produce>
Row product(std::string name, Produce produce, Promise promise = Promise::Unchanged)
{
    using Product = std::optional<decltype(produce())>;
    return row(
        std::move(name), [] { return Product(); },
        [=](Product& product) { product.emplace(produce()); }, promise);
}

std::vector<Row> bufferRows();
std::vector<Row> collectionRows();
std::vector<Row> converterRows();
std::vector<Row> numberRows();
std::vector<Row> objectRows();
std::vector<Row> streamRows();
std::vector<Row> textRows();

} // namespace orv::test
