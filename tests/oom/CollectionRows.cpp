#include "Sweep.h"

#include "orv/collections/IntegerHashMap.h"
#include "orv/collections/Set.h"
#include "orv/collections/StringHashMap.h"
#include "orv/collections/quark/ArrayList.h"
#include "orv/collections/quark/HashMap.h"
#include "orv/collections/quark/LinkedList.h"
#include "tests/orv/collections/Elements.h"

#include <set>

namespace orv::test {

namespace {

using collections::IntegerHashMap;
using collections::StringHashMap;
using collections::quark::ArrayList;
using collections::quark::HashMap;
using collections::quark::LinkedList;

/// A collection of the numbers from 0 on; its state is a stroke for each, and a mark where it holds
/// anything else or miscounts.
template <class Collection>
struct Collected {
    Reference<Collection> it = makeReference<Collection>();

    std::string state() const
    {
        std::set<std::string> found;
        const auto look = [&](const auto& elements) {
            for (const auto* each : *elements) {
                found.insert(stateOf(dynamic_cast<const Object&>(*each)));
            }
        };
        if constexpr (requires { it->createKeySet(); }) {
            look(it->createKeySet());
        } else {
            look(it);
        }
        std::string text;
        while (found.contains(std::to_string(text.size()))) text += '|';
        const auto size = static_cast<std::size_t>(it->getSize());
        return text.size() == found.size() && text.size() == size ? text : text + " and more";
    }
};

/// Adds by `operation` from the first memory on through all growth.
template <class Collection, class Operation>
void addRow(std::vector<Row>& rows, const char* name, Operation operation)
{
    rows.push_back(row(
        name, [] { return Collected<Collection>(); },
        [=](Collected<Collection>& to) {
            for (int i = 0; i < 90; ++i) operation(*to.it, i);
        },
        Promise::Partial));
}

} // namespace

std::vector<Row> collectionRows()
{
    std::vector<Row> rows;
    const auto append = [](auto& list, int i) { list.add(boxed(i).get()); };
    const auto insert = [](auto& list, int i) { list.add(0, boxed(i).get()); };
    addRow<ArrayList>(rows, "ArrayList, add", append);
    addRow<ArrayList>(rows, "ArrayList, insert", insert);
    addRow<LinkedList>(rows, "LinkedList, add", append);
    addRow<LinkedList>(rows, "LinkedList, insert", insert);
    addRow<HashMap>(rows, "HashMap, put",
                    [](auto& map, int i) { map.put(boxed(i).get(), nullptr); });
    addRow<IntegerHashMap>(rows, "IntegerHashMap, put",
                           [](auto& map, int i) { map.put(i, makeReference<Integer32>(i).get()); });
    addRow<StringHashMap>(rows, "StringHashMap, put",
                          [](auto& map, int i) { map.put(String::valueOf(i), nullptr); });
    return rows;
}

} // namespace orv::test
