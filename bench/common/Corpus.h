#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// Generated text: the same units on every machine and in every run.

namespace orv::bench {

inline constexpr std::size_t MIB = 1024 * 1024;

/// The splitmix64 generator (Steele, Lea and Flood 2014).
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15u;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
        return mixed ^ (mixed >> 31);
    }
    std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>(next() % bound); }

private:
    std::uint64_t m_state;
};

/// One text in two forms.
struct Corpus {
    std::string name;
    std::string utf8;     ///< exactly the size asked for
    std::u16string utf16; ///< the same text
};

namespace detail {

inline std::size_t utf8Size(char32_t character)
{
    if (character < 0x80) return 1;
    if (character < 0x800) return 2;
    return character < 0x10000 ? 3 : 4;
}

inline void appendUtf8(std::string& out, char32_t character)
{
    const std::size_t size = utf8Size(character);
    if (size == 1) {
        out += static_cast<char>(character);
        return;
    }
    constexpr std::array<unsigned, 5> lead{0, 0, 0xC0, 0xE0, 0xF0};
    auto shift = static_cast<unsigned>(6 * (size - 1));
    out += static_cast<char>(lead[size] | (character >> shift));
    while (shift != 0) {
        shift -= 6;
        out += static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    }
}

inline void appendUtf16(std::u16string& out, char32_t character)
{
    if (character < 0x10000) {
        out += static_cast<char16_t>(character);
        return;
    }
    character -= 0x10000;
    out += static_cast<char16_t>(0xD800 + (character >> 10));
    out += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
}

inline std::u32string logLine(Random& random)
{
    constexpr std::array levels{"INFO ", "DEBUG", "WARN ", "ERROR"};
    constexpr std::array parts{"net.server", "store.cache", "job.queue", "auth.session",
                               "ui.bridge"};
    constexpr std::array verbs{"request handled", "entry evicted", "job finished", "token renewed",
                               "retry planned"};
    std::string line;
    const auto add = [&](const char* before, std::uint32_t least, std::uint32_t bound) {
        line += before;
        line += std::to_string(least + random.below(bound));
    };
    add("2024-03-", 10, 20);
    add(" ", 10, 14);
    add(":", 10, 50);
    add(":", 10, 50);
    add(".", 100, 900);
    add(" [", 1000, 9000);
    line += "] ";
    line += levels[random.below(4)];
    line += " ";
    line += parts[random.below(5)];
    line += ": ";
    line += verbs[random.below(5)];
    add(" id=", 0, 1000000);
    add(" in ", 0, 500);
    line += " ms\n";
    return {line.begin(), line.end()};
}

inline std::u32string latinWord(Random& random)
{
    constexpr std::u32string_view accents = U"äöüßéèêëàâçñîïôûæøåÄÖÜÉÇÑØÅ";
    std::u32string word;
    for (std::uint32_t left = 3 + random.below(8); left > 0; --left) {
        const bool accented = random.below(3) == 0;
        word += accented ? accents[random.below(static_cast<std::uint32_t>(accents.size()))]
                         : static_cast<char32_t>('a' + random.below(26));
    }
    word += random.below(12) == 0 ? U'\n' : U' ';
    return word;
}

inline std::u32string cjkRun(Random& random)
{
    std::u32string run;
    for (std::uint32_t left = 5 + random.below(20); left > 0; --left) {
        run += static_cast<char32_t>(0x4E00 + random.below(0x5000));
    }
    run += U'\u3002';
    return run;
}

inline std::u32string emojiRun(Random& random)
{
    std::u32string run;
    for (int i = 0; i < 8; ++i) run += static_cast<char32_t>(0x1F300 + random.below(0x340));
    return run;
}

inline std::u32string mixedRun(Random& random)
{
    const std::uint32_t kind = random.below(10);
    if (kind < 5) return logLine(random);
    if (kind < 7) return latinWord(random) + latinWord(random) + latinWord(random);
    return kind < 9 ? cjkRun(random) : emojiRun(random);
}

inline std::u32string nextPiece(std::string_view name, Random& random)
{
    if (name == "ascii") return logLine(random);
    if (name == "latin1") return latinWord(random);
    if (name == "cjk") return cjkRun(random);
    if (name == "emoji") return emojiRun(random);
    return mixedRun(random);
}

} // namespace detail

/// A text of `bytes` bytes of UTF-8: "ascii" (log lines), "latin1" (a third of the letters
/// accented), "cjk", "emoji" or "mixed".
inline Corpus makeCorpus(const std::string& name, std::size_t bytes)
{
    Random random(0x5EED0000 + name.size() * 131 + static_cast<unsigned char>(name[0]));
    Corpus corpus{name, {}, {}};
    corpus.utf8.reserve(bytes);
    while (corpus.utf8.size() < bytes) {
        for (char32_t character : detail::nextPiece(name, random)) {
            const std::size_t left = bytes - corpus.utf8.size();
            if (left == 0) break;
            if (detail::utf8Size(character) > left) character = U'.';
            detail::appendUtf8(corpus.utf8, character);
            detail::appendUtf16(corpus.utf16, character);
        }
    }
    return corpus;
}

/// 1 MiB of each kind.
inline const std::vector<Corpus>& corpora()
{
    static const std::vector<Corpus> all{makeCorpus("ascii", MIB), makeCorpus("latin1", MIB),
                                         makeCorpus("cjk", MIB), makeCorpus("emoji", MIB),
                                         makeCorpus("mixed", MIB)};
    return all;
}

/// Text in a one-byte encoding: printable ASCII, and `high` per cent of the bytes in `upper`.
inline std::string makeSingleByte(std::size_t bytes, std::string_view upper, std::uint32_t high)
{
    Random random(77);
    std::string text;
    text.reserve(bytes);
    while (text.size() < bytes) {
        text += random.below(100) < high
                    ? upper[random.below(static_cast<std::uint32_t>(upper.size()))]
                    : static_cast<char>(0x20 + random.below(0x5F));
    }
    return text;
}

} // namespace orv::bench
