// Counts the words of a text in a map and lists them, the most frequent first.

#include <orv/Integer32>
#include <orv/Reference>
#include <orv/String>
#include <orv/collections/List>
#include <orv/collections/Map>
#include <orv/collections/quark/HashMap>
#include <orv/collections/quark/LinkedList>
#include <orv/util/StringTokenizer>

#include <cstdio>

using namespace orv;
using collections::List;
using collections::Map;

namespace {

constexpr char16_t TEXT[] =
    u"How much wood would a woodchuck chuck if a woodchuck could chuck wood? "
    u"As much wood as a woodchuck would, if a woodchuck could chuck wood.";

/// Texts are equal by their units and numbers by their value, so both serve as keys and elements.
Map<String, Integer32> countWords(const String& text)
{
    Map<String, Integer32> counts(makeReference<collections::quark::HashMap>().get());
    util::StringTokenizer words(text, u" .,?");
    while (words.hasMoreTokens()) {
        const auto word = makeReference<String>(words.nextToken());
        word->toLower();
        const Reference<Integer32> before = counts.get(word.get());
        const std::int32_t count = before ? before->toInt32() : 0;
        counts.put(word.get(), makeReference<Integer32>(count + 1).get());
    }
    return counts;
}

/// The words by falling count, those of one count by their text.
List<String> ranked(const Map<String, Integer32>& counts)
{
    List<String> order(makeReference<collections::quark::LinkedList>().get());
    for (const auto& [word, count] : counts) {
        const auto place = order.createListIterator(0);
        while (place->hasNext()) {
            const Reference<String> other = place->next();
            const std::int32_t difference = counts.get(other.get())->compareTo(*count);
            if (difference > 0 || (difference == 0 && other->compareTo(*word) < 0)) continue;
            place->previous(); // the word goes before this one
            break;
        }
        place->add(word.get());
    }
    return order;
}

} // namespace

int main()
{
    const Map<String, Integer32> counts = countWords(TEXT);
    std::printf("%d different words\n", counts.getSize());
    List<String> order = ranked(counts);
    const auto top = order.createSubList(0, 3); // a live view
    for (const String* word : *top) {
        std::printf("%s: %d\n", word->getBytes(), counts.get(word)->toInt32());
    }
    return 0;
}
