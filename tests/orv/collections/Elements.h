#pragma once

#include "orv/Integers.h"
#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/collections/quark/Collection.h"

#include <vector>

/// \file
/// Numbers as elements, for the tests of the collections.

namespace orv::test {

/// A boxed number as an element.
inline Reference<IORVUnknown> boxed(int value)
{
    return toUnknown(makeReference<Integer32>(value).get());
}

/// What boxed() made of, -1 for null.
inline int unboxed(const IORVUnknown* element)
{
    return element == nullptr ? -1 : static_cast<int>(dynamic_cast<const Integer32&>(*element));
}
inline int unboxed(const Reference<IORVUnknown>& element)
{
    return unboxed(element.get());
}

/// The numbers of `collection`, in the order of its iterator.
inline std::vector<int> numbersOf(const collections::quark::Collection& collection)
{
    std::vector<int> numbers;
    const auto iterator = collection.createConstIterator();
    while (iterator->hasNext()) numbers.push_back(unboxed(iterator->next()));
    return numbers;
}

/// Appends the numbers.
template <class Collection>
void fill(Collection& collection, const std::vector<int>& values)
{
    for (const int value : values) collection.add(boxed(value).get());
}

/// A text as an element.
inline Reference<String> text(const char16_t* units)
{
    return makeReference<String>(units);
}

/// The texts one behind the other, with - for null.
template <class Texts>
String joined(const Texts& texts)
{
    String all;
    for (const String* part : texts) all.append(part != nullptr ? *part : String(u"-"));
    return all;
}

} // namespace orv::test
