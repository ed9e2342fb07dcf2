#include "Sweep.h"

#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/LinkedList.h"
#include "tests/orv/collections/Elements.h"

namespace orv::test {

namespace {

using collections::IntegerHashMap;
using collections::StringHashMap;
using collections::quark::ArrayList;
using collections::quark::HashMap;
using collections::quark::LinkedList;

/// A collection; its state is what it holds, in order, and how much it says that is.
template <class Collection>
struct Collected {
    Reference<Collection> it = makeReference<Collection>();

    std::string state() const
    {
        std::string text = std::to_string(it->getSize());
        const auto show = [&](const auto& elements) {
            for (const auto* each : *elements) {
                text += " " + stateOf(dynamic_cast<const Object&>(*each));
            }
        };
        if constexpr (requires { it->createKeySet(); }) {
            show(it->createKeySet());
        } else {
            show(it);
        }
        return text;
    }
};

/// Adds by `operation` to a collection that has room for one more, or none, or no memory at all.
template <class Collection, class Operation>
void addRows(std::vector<Row>& rows, const std::string& name, Operation operation)
{
    for (const int size : {0, 4, 8, 16, 75}) {
        const auto make = [=] {
            Collected<Collection> collected;
            for (int i = 0; i < size; ++i) operation(*collected.it, i);
            return collected;
        };
        rows.push_back(row(name + " beside " + std::to_string(size), make,
                           [=](Collected<Collection>& to) { operation(*to.it, 1000); }));
    }
}

} // namespace

std::vector<Row> collectionRows()
{
    std::vector<Row> rows;
    const auto append = [](auto& list, int i) { list.add(boxed(i).get()); };
    const auto insert = [](auto& list, int i) { list.add(0, boxed(i).get()); };
    addRows<ArrayList>(rows, "ArrayList, add", append);
    addRows<ArrayList>(rows, "ArrayList, insert", insert);
    addRows<LinkedList>(rows, "LinkedList, add", append);
    addRows<LinkedList>(rows, "LinkedList, insert", insert);
    addRows<HashMap>(rows, "HashMap, put",
                     [](auto& map, int i) { map.put(boxed(i).get(), nullptr); });
    addRows<IntegerHashMap>(rows, "IntegerHashMap, put", [](auto& map, int i) {
        map.put(i, makeReference<Integer32>(i).get());
    });
    addRows<StringHashMap>(rows, "StringHashMap, put",
                           [](auto& map, int i) { map.put(String::valueOf(i), nullptr); });
    return rows;
}

} // namespace orv::test
