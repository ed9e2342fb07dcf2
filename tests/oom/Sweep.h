#pragma once

#include "orv/Exception.h"
#include "orv/Reference.h"
#include "platform/orvcore.h"
#include "tests/support/Text.h"

#include <concepts>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

/// \file
/// Operations with one of their allocations failing. A row makes an object while memory lasts,
/// works on it while an allocation fails, and shows the state of the object before and after:
///
///     row("append", [] { return String(u"abc"); }, [](String& text) { text.append(u"def"); })
///     product("copy", [] { return String(u"abc"); })     // a row that makes something of nothing
///
/// SweepTest.cpp holds each row against what is promised, for every one of its allocations.

namespace orv::test {

/// What an interface operation gave: returning E_OUTOFMEMORY is its only way to run out of memory.
struct Returned {
    Result result;
};

enum class Ending {
    Done,
    OutOfMemory,
    Otherwise, ///< with another failure, or by throwing from an interface
};

template <class Operation>
Ending endingOf(const Operation& operation)
{
    constexpr bool isInterface = std::is_same_v<decltype(operation()), Returned>;
    try {
        if constexpr (isInterface) {
            const Result result = operation().result;
            if (result == E_OUTOFMEMORY) return Ending::OutOfMemory;
            return failed(result) ? Ending::Otherwise : Ending::Done;
        } else {
            operation();
            return Ending::Done;
        }
    } catch (const Exception& exception) {
        const bool memory = exception.getResult() == E_OUTOFMEMORY;
        return memory && !isInterface ? Ending::OutOfMemory : Ending::Otherwise;
    } catch (const std::bad_alloc&) {
        return isInterface ? Ending::Otherwise : Ending::OutOfMemory;
    } catch (...) {
        return Ending::Otherwise;
    }
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

struct Row {
    std::string name;
    /// Runs the operation with its `nth` allocation failing, and with `forever` all later ones; 0
    /// lets none fail.
    std::function<Outcome(std::uint64_t nth, bool forever)> run;
    /// Whether a part may have been done without memory, never anything else than the beginning.
    bool partial = false;
    /// Whether doing it a second time in a process is another thing.
    bool onlyFresh = false;
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
Row row(std::string name, Make make, Operation operation)
{
    return {std::move(name), [=](std::uint64_t nth, bool forever) {
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
            }};
}

template <class Produce>
Row product(std::string name, Produce produce)
{
    using Product = std::optional<decltype(produce())>;
    return row(
        std::move(name), [] { return Product(); },
        [=](Product& product) { product.emplace(produce()); });
}

/// A row of which a part may have been done.
inline Row partial(Row row)
{
    row.partial = true;
    return row;
}

/// A row that is run in processes of its own only.
inline Row onlyFresh(Row row)
{
    row.onlyFresh = true;
    return row;
}

std::vector<Row> bufferRows();
std::vector<Row> collectionRows();
std::vector<Row> converterRows();
std::vector<Row> numberRows();
std::vector<Row> objectRows();
std::vector<Row> streamRows();
std::vector<Row> textRows();

} // namespace orv::test
