#include "orv/String.h"

#include "bench/common/Case.h"
#include "bench/common/Corpus.h"

#include <algorithm>
#include <cstring>
#include <cwctype>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#if __has_include(<QString>)
#include <QHash>
#include <QString>
#include <QStringBuilder>
#endif
#if __has_include(<unicode/unistr.h>)
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#endif
#if __has_include(<Poco/UTF8String.h>)
#include <Poco/String.h>
#include <Poco/UTF8String.h>
#endif
#if __has_include(<absl/hash/hash.h>)
#include <absl/hash/hash.h>
#endif

// Strings of 8, 64 and 4096 units: sharing, growing, searching, comparing, hashing.

namespace orv::bench {
namespace {

struct Orv {
    using Text = String;
    static constexpr const char* name = LIBRARY;
    static constexpr const char* hashName = name;
    static Text make(std::u16string_view units)
    {
        return {units.data(), static_cast<std::int32_t>(units.size())};
    }
    static Text withRoom(int units) { return String(units + 1); }
    static void append1(Text& text, char16_t unit) { text.append(unit); }
    static void append(Text& text, const Text& piece) { text.append(piece); }
    static long find(const Text& text, const Text& piece) { return text.indexOf(piece); }
    static long findUnit(const Text& text, char16_t unit) { return text.indexOf(unit); }
    static int compareBlind(const Text& a, const Text& b) { return a.compare(b, true); }
    static int compare(const Text& a, const Text& b) { return a.compare(b); }
    static std::size_t hash(const Text& text) { return text.hashCode(); }
    static Text part(const Text& text, int at, int count) { return text.substring(at, at + count); }
    static Text joined(const Text& a, const Text& b) { return a + b; }
    static Text number(int value) { return String::valueOf(value); }
    static Text upper(const Text& text)
    {
        Text result(text);
        result.toUpper();
        return result;
    }
};

struct Std {
    using Text = std::u16string;
    static constexpr const char* name = "std_u16string";
    static constexpr const char* hashName = name;
    static Text make(std::u16string_view units) { return Text(units); }
    static Text withRoom(int units)
    {
        Text text;
        text.reserve(static_cast<std::size_t>(units));
        return text;
    }
    static void append1(Text& text, char16_t unit) { text.push_back(unit); }
    static void append(Text& text, const Text& piece) { text.append(piece); }
    static long find(const Text& text, const Text& piece)
    {
        return static_cast<long>(text.find(piece));
    }
    static long findUnit(const Text& text, char16_t unit)
    {
        return static_cast<long>(text.find(unit));
    }
    static int compareBlind(const Text& a, const Text& b)
    {
        const std::size_t common = std::min(a.size(), b.size());
        for (std::size_t i = 0; i < common; ++i) {
            if (a[i] == b[i]) continue;
            const int difference =
                static_cast<int>(std::towlower(a[i])) - static_cast<int>(std::towlower(b[i]));
            if (difference != 0) return difference;
        }
        return static_cast<int>(a.size()) - static_cast<int>(b.size());
    }
    static int compare(const Text& a, const Text& b) { return a.compare(b); }
    static std::size_t hash(const Text& text) { return std::hash<Text>()(text); }
    static Text part(const Text& text, int at, int count)
    {
        return text.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
    }
    static Text joined(const Text& a, const Text& b) { return a + b; }
    static Text upper(const Text& text)
    {
        Text result(text);
        for (char16_t& unit : result) unit = static_cast<char16_t>(std::towupper(unit));
        return result;
    }
};

#if __has_include(<QString>)
struct Qt {
    using Text = QString;
    static constexpr const char* name = "qt";
    static constexpr const char* hashName = name;
    static Text make(std::u16string_view units)
    {
        return Text(reinterpret_cast<const QChar*>(units.data()), static_cast<int>(units.size()));
    }
    static Text withRoom(int units)
    {
        Text text;
        text.reserve(units);
        return text;
    }
    static void append1(Text& text, char16_t unit) { text.append(QChar(unit)); }
    static void append(Text& text, const Text& piece) { text.append(piece); }
    static long find(const Text& text, const Text& piece) { return text.indexOf(piece); }
    static long findUnit(const Text& text, char16_t unit) { return text.indexOf(QChar(unit)); }
    static int compareBlind(const Text& a, const Text& b)
    {
        return a.compare(b, ::Qt::CaseInsensitive);
    }
    static int compare(const Text& a, const Text& b) { return a.compare(b); }
    static std::size_t hash(const Text& text) { return qHash(text, 0x5EED); }
    static Text part(const Text& text, int at, int count) { return text.mid(at, count); }
    static Text joined(const Text& a, const Text& b) { return QString(a % b); }
    static Text number(int value) { return QString::number(value); }
    static Text upper(const Text& text) { return text.toUpper(); }
};
#endif

#if __has_include(<unicode/unistr.h>)
struct Icu {
    using Text = icu::UnicodeString;
    static constexpr const char* name = "icu";
    // Looks at a few dozen units of a long text only, as the library does.
    static constexpr const char* hashName = "icu_sampled";
    static Text make(std::u16string_view units)
    {
        return {units.data(), static_cast<std::int32_t>(units.size())};
    }
    static Text withRoom(int units)
    {
        Text text;
        text.getBuffer(units);
        text.releaseBuffer(0);
        return text;
    }
    static void append1(Text& text, char16_t unit) { text.append(unit); }
    static void append(Text& text, const Text& piece) { text.append(piece); }
    static long find(const Text& text, const Text& piece) { return text.indexOf(piece); }
    static long findUnit(const Text& text, char16_t unit) { return text.indexOf(unit); }
    static int compareBlind(const Text& a, const Text& b)
    {
        return a.caseCompare(b, U_FOLD_CASE_DEFAULT);
    }
    static int compare(const Text& a, const Text& b) { return a.compare(b); }
    static std::size_t hash(const Text& text) { return static_cast<std::size_t>(text.hashCode()); }
    static Text part(const Text& text, int at, int count) { return {text, at, count}; }
    static Text joined(const Text& a, const Text& b) { return a + b; }
    static Text upper(const Text& text)
    {
        Text result(text);
        result.toUpper(icu::Locale::getRoot());
        return result;
    }
};
#endif

#if __has_include(<Poco/UTF8String.h>)
/// There is no text class of its own: std::string holding UTF-8 with that library's helpers, half
/// the bytes of the others.
struct Poco8 {
    using Text = std::string;
    static constexpr const char* name = "ref_poco_utf8";
    static constexpr const char* hashName = name;
    static Text make(std::u16string_view units)
    {
        Text text;
        for (const char16_t unit : units) text += static_cast<char>(unit);
        return text;
    }
    static Text withRoom(int units)
    {
        Text text;
        text.reserve(static_cast<std::size_t>(units));
        return text;
    }
    static void append1(Text& text, char16_t unit) { text.push_back(static_cast<char>(unit)); }
    static void append(Text& text, const Text& piece) { text.append(piece); }
    static long find(const Text& text, const Text& piece)
    {
        return static_cast<long>(text.find(piece));
    }
    static long findUnit(const Text& text, char16_t unit)
    {
        return static_cast<long>(text.find(static_cast<char>(unit)));
    }
    static int compareBlind(const Text& a, const Text& b) { return Poco::UTF8::icompare(a, b); }
    static int compare(const Text& a, const Text& b) { return a.compare(b); }
    static std::size_t hash(const Text& text) { return std::hash<Text>()(text); }
    static Text part(const Text& text, int at, int count)
    {
        return text.substr(static_cast<std::size_t>(at), static_cast<std::size_t>(count));
    }
    static Text joined(const Text& a, const Text& b) { return a + b; }
    static Text number(int value) { return std::to_string(value); }
    static Text upper(const Text& text) { return Poco::UTF8::toUpper(text); }
};
#endif

const std::u16string& logText()
{
    static const std::u16string text = makeCorpus("ascii", 65536).utf16;
    return text;
}

std::u16string_view piece(int units)
{
    return std::u16string_view(logText()).substr(0, static_cast<std::size_t>(units));
}

std::u16string otherCase(std::u16string_view text)
{
    std::u16string flipped(text);
    for (char16_t& unit : flipped) {
        const char16_t lower = unit | 0x20;
        if (lower >= u'a' && lower <= u'z') unit ^= 0x20;
    }
    return flipped;
}

/// Times `operation(a, b)` on two texts that the compiler knows nothing about.
template <class Text, class Operation>
void timeOnTwo(benchmark::State& state, Text a, Text b, Operation operation)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        auto result = operation(a, b);
        benchmark::DoNotOptimize(result);
    }
}

/// Times `operation(text)`.
template <class Text, class Operation>
void timeOn(benchmark::State& state, Text text, Operation operation)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        auto result = operation(text);
        benchmark::DoNotOptimize(result);
    }
}

template <class Peer>
void addSized(int units)
{
    using Text = typename Peer::Text;
    const std::string size = "/" + std::to_string(units);
    addCase("copy" + size, Peer::name, [units](benchmark::State& state) {
        timeOn(state, Peer::make(piece(units)), [](const Text& text) { return Text(text); });
    });
    addCase("copy_then_append1" + size, Peer::name, [units](benchmark::State& state) {
        timeOn(state, Peer::make(piece(units)), [](const Text& text) {
            Text copy(text);
            Peer::append1(copy, u'x');
            return copy;
        });
    });
    addCase("hash" + size, Peer::hashName, [units](benchmark::State& state) {
        timeOn(state, Peer::make(piece(units)), &Peer::hash);
    });
    addCase("equal" + size, Peer::name, [units](benchmark::State& state) {
        timeOnTwo(state, Peer::make(piece(units)), Peer::make(piece(units)),
                  [](const Text& a, const Text& b) { return a == b; });
    });
    addCase("compare" + size, Peer::name, [units](benchmark::State& state) {
        timeOnTwo(state, Peer::make(piece(units)), Peer::make(piece(units)), &Peer::compare);
    });
    addCase("compare_ignore_case" + size, Peer::name, [units](benchmark::State& state) {
        const Text a = Peer::make(piece(units));
        const Text b = Peer::make(otherCase(piece(units)));
        if (Peer::compareBlind(a, b) != 0) return state.SkipWithError("wrong result");
        timeOnTwo(state, a, b, &Peer::compareBlind);
    });
}

template <class Peer>
void addGrowing(bool reserved)
{
    using Text = typename Peer::Text;
    const std::string how = reserved ? "_reserved/per_call" : "/per_call";
    addCase("append1_x4096" + how, Peer::name, [reserved](benchmark::State& state) {
        for (auto _ : state) {
            Text text = reserved ? Peer::withRoom(4096) : Text();
            for (int i = 0; i < 4096; ++i) {
                Peer::append1(text, static_cast<char16_t>(u'a' + (i & 15)));
            }
            benchmark::DoNotOptimize(text);
        }
        state.SetItemsProcessed(state.iterations() * 4096);
    });
    addCase("append16_x1024" + how, Peer::name, [reserved](benchmark::State& state) {
        const Text sixteen = Peer::make(piece(16));
        for (auto _ : state) {
            Text text = reserved ? Peer::withRoom(16384) : Text();
            for (int i = 0; i < 1024; ++i) Peer::append(text, sixteen);
            benchmark::DoNotOptimize(text);
        }
        state.SetItemsProcessed(state.iterations() * 1024);
    });
}

constexpr std::u16string_view RARE = u"2024-03-99 x";

std::u16string textWithRare()
{
    std::u16string text = logText();
    text.replace(text.size() - 40, RARE.size(), RARE);
    return text;
}

template <class Peer>
void addSearching()
{
    using Text = typename Peer::Text;
    addCase("indexOf_text_64Ki/rare", Peer::name, [](benchmark::State& state) {
        const std::u16string units = textWithRare();
        const Text text = Peer::make(units);
        const Text sought = Peer::make(RARE);
        if (Peer::find(text, sought) != static_cast<long>(units.size()) - 40) {
            return state.SkipWithError("wrong result");
        }
        timeOnTwo(state, text, sought, &Peer::find);
    });
    addCase("indexOf_char_64Ki/absent", Peer::name, [](benchmark::State& state) {
        timeOn(state, Peer::make(logText()),
               [](const Text& text) { return Peer::findUnit(text, u'~'); });
    });
}

template <class Peer>
void addMaking()
{
    using Text = typename Peer::Text;
    addCase("substring/16_of_64", Peer::name, [](benchmark::State& state) {
        timeOn(state, Peer::make(piece(64)),
               [](const Text& text) { return Peer::part(text, 20, 16); });
    });
    addCase("concat/32+32", Peer::name, [](benchmark::State& state) {
        timeOnTwo(state, Peer::make(piece(32)), Peer::make(piece(32)), &Peer::joined);
    });
    addCase("make_from_units/40", Peer::name,
            [](benchmark::State& state) { timeOn(state, piece(40), &Peer::make); });
    addCase("to_upper/64", Peer::name,
            [](benchmark::State& state) { timeOn(state, Peer::make(piece(64)), &Peer::upper); });
    if constexpr (requires { Peer::number(1); }) {
        addCase("from_int/9_digits", Peer::name,
                [](benchmark::State& state) { timeOn(state, 123456789, &Peer::number); });
    }
}

template <class Peer>
void addText()
{
    for (const int units : {8, 64, 4096}) addSized<Peer>(units);
    for (const bool reserved : {false, true}) addGrowing<Peer>(reserved);
    addSearching<Peer>();
    addMaking<Peer>();
}

void addLimits()
{
    for (const int units : {8, 64, 4096}) {
        const std::string size = "/" + std::to_string(units);
        addCase("copy" + size, "std_shared_ptr_u16", [units](benchmark::State& state) {
            timeOn(state, std::make_shared<const std::u16string>(piece(units)),
                   [](const auto& text) { return text; });
        });
        addCase("equal" + size, "limit_memcmp", [units](benchmark::State& state) {
            timeOnTwo(state, std::u16string(piece(units)), std::u16string(piece(units)),
                      [](const std::u16string& a, const std::u16string& b) {
                          return a.size() == b.size() &&
                                 std::memcmp(a.data(), b.data(), a.size() * 2) == 0;
                      });
        });
        addCase("hash" + size, "ref_times37_loop", [units](benchmark::State& state) {
            timeOn(state, std::u16string(piece(units)), [](const std::u16string& text) {
                std::uint32_t hash = 0;
                for (const char16_t unit : text) hash = hash * 37 + unit;
                return hash;
            });
        });
#if __has_include(<absl/hash/hash.h>)
        addCase("hash" + size, "absl_hash_u16", [units](benchmark::State& state) {
            timeOn(state, std::u16string(piece(units)), [](const std::u16string& text) {
                return absl::Hash<std::string_view>()(
                    std::string_view(reinterpret_cast<const char*>(text.data()), text.size() * 2));
            });
        });
#endif
    }
    addCase("indexOf_text_64Ki/rare", "std_bmh_searcher", [](benchmark::State& state) {
        timeOn(state, textWithRare(), [](const std::u16string& text) {
            return std::search(text.begin(), text.end(),
                               std::boyer_moore_horspool_searcher(RARE.begin(), RARE.end()));
        });
    });
}

const bool registered = [] {
    addText<Orv>();
    addText<Std>();
#if __has_include(<QString>)
    addText<Qt>();
#endif
#if __has_include(<unicode/unistr.h>)
    addText<Icu>();
#endif
#if __has_include(<Poco/UTF8String.h>)
    addText<Poco8>();
#endif
    addLimits();
    return true;
}();

} // namespace
} // namespace orv::bench
