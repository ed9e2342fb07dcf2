#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdarg>
#include <vector>

namespace orv {

namespace {

/// Prints as "%g" does in the C locale.
template <class Value>
char* print(char* begin, char* end, Value value)
{
    if constexpr (std::is_floating_point_v<Value>) {
        return std::to_chars(begin, end, value, std::chars_format::general, 6).ptr;
    } else {
        return std::to_chars(begin, end, value).ptr;
    }
}

/// What is printed is plain ASCII, which the decoders of all default encodings only widen.
template <class Value>
String numberText(Value value)
{
    std::array<char, 32> text;
    std::array<char16_t, 32> units;
    const char* const end = print(text.data(), text.data() + text.size(), value);
    std::copy_n(text.data(), end - text.data(), units.data());
    return {units.data(), static_cast<std::int32_t>(end - text.data())};
}

/// A placeholder of a pattern: "{", a number as valueOf() prints it, "}".
struct Placeholder {
    std::int32_t start;
    std::int32_t end; ///< behind the brace
    std::size_t number;
};

constexpr std::int32_t MOST_DIGITS = 9; // more placeholders than that fit into no pattern

/// The placeholder at the brace `start`, if it is one.
bool placeholderAt(const char16_t* pattern, std::int32_t length, std::int32_t start,
                   Placeholder& out)
{
    std::int32_t at = start + 1;
    std::size_t number = 0;
    const std::int32_t limit = std::min(length, at + MOST_DIGITS);
    for (; at < limit && pattern[at] >= u'0' && pattern[at] <= u'9'; ++at) {
        number = number * 10 + (pattern[at] - u'0');
    }
    const std::int32_t digits = at - start - 1;
    if (digits == 0 || at == length || pattern[at] != u'}') return false;
    if (digits > 1 && pattern[start + 1] == u'0') return false;
    out = {start, at + 1, number};
    return true;
}

std::vector<Placeholder> placeholdersOf(const char16_t* pattern, std::int32_t length)
{
    std::vector<Placeholder> found;
    Placeholder next{};
    for (std::int32_t at = 0; at < length; ++at) {
        if (pattern[at] != u'{' || !placeholderAt(pattern, length, at, next)) continue;
        found.push_back(next);
        at = next.end - 1;
    }
    return found;
}

/// The first number that does not occur.
std::size_t firstMissing(const std::vector<Placeholder>& placeholders)
{
    std::vector<bool> occurs(placeholders.size() + 1);
    for (const Placeholder& each : placeholders) {
        if (each.number < occurs.size()) occurs[each.number] = true;
    }
    return static_cast<std::size_t>(std::find(occurs.begin(), occurs.end(), false) -
                                    occurs.begin());
}

} // namespace

String String::valueOf(bool value)
{
    return value ? String(STRUCT_ORV_STR_LIT_INFO{u"true", 4})
                 : String(STRUCT_ORV_STR_LIT_INFO{u"false", 5});
}

String String::valueOf(char16_t unit)
{
    return {unit, 1, 2};
}

String String::valueOf(int value)
{
    return numberText(value);
}

String String::valueOf(unsigned int value)
{
    return numberText(value);
}

String String::valueOf(long value)
{
    return numberText(value);
}

String String::valueOf(unsigned long value)
{
    return numberText(value);
}

String String::valueOf(long long value)
{
    return numberText(value);
}

String String::valueOf(unsigned long long value)
{
    return numberText(value);
}

String String::valueOf(float value)
{
    return numberText(static_cast<double>(value));
}

String String::valueOf(double value)
{
    return numberText(value);
}

const String& String::formatList(const char16_t* pattern, std::int32_t length,
                                 const char16_t* const* arguments, std::size_t count)
{
    length = internal::measured(pattern, length);
    const std::vector<Placeholder> placeholders = placeholdersOf(pattern, length);
    count = std::min(count, firstMissing(placeholders));

    // Pattern and arguments may lie in this String, so it changes last.
    String result(length + 1);
    std::int32_t from = 0;
    for (const Placeholder& each : placeholders) {
        if (each.number >= count) continue;
        result.append(pattern + from, each.start - from);
        result.append(arguments[each.number], -1);
        from = each.end;
    }
    result.append(pattern + from, length - from);
    usePlain(result.m_plain);
    dropBytes();
    return *this;
}

const String& String::formatv(const char16_t* pattern, std::int32_t length, std::va_list arguments)
{
    length = internal::measured(pattern, length);
    const std::size_t count = firstMissing(placeholdersOf(pattern, length));
    std::vector<const char16_t*> list(count);
    for (const char16_t*& each : list) each = va_arg(arguments, const char16_t*);
    return formatList(pattern, length, list.data(), count);
}

const String& String::formatv(const String& pattern, std::va_list arguments)
{
    const String held(pattern); // the pattern may be this String
    return formatv(held.getData(), held.getLength(), arguments);
}

} // namespace orv
