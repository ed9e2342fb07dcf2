#include "orv/Exception.h"
#include "orv/util/CommandLineParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

/// \file
/// Command lines of any units, with and without definitions. What was parsed must be consistent,
/// and a line written from its elements must parse to the same ones.

namespace {

using orv::String;
using orv::util::CommandLineParser;

void require(bool holds)
{
    if (!holds) std::abort();
}

void checkElements(CommandLineParser& line)
{
    std::int32_t parameters = 0;
    for (std::int32_t i = 0; i < line.getElementCount(); ++i) {
        const auto element = line.getElement(i);
        require(element->getPosition() == i);
        if (parameters < line.getParameterCount() && line.getParameter(parameters) == element) {
            require(element->getName().getLength() == 0 && element->getValueCount() == 1);
            ++parameters;
            continue;
        }
        const String name = element->getName();
        require(!name.startsWith(u"-") && !name.startsWith(u"/") && name.indexOf(u'=') == -1);
        for (const bool ignoreCase : {false, true}) {
            line.setIgnoreCase(ignoreCase);
            require(line.isPresent(name.getData()));
            const auto answers = line.getOption(name.getData());
            require(answers->getPosition() >= i);
            require(answers->getName().equals(name, ignoreCase));
        }
        line.setIgnoreCase(false);
    }
    require(parameters == line.getParameterCount());
}

/// The word that gives back an element, empty where the grammar has none.
String wordOf(const CommandLineParser::Element& element, bool isParameter)
{
    String word;
    bool listHasBlank = false;
    bool listIsQuoted = false;
    if (!isParameter) word.append(u'-').append(element.getName()).append(u'=');
    for (std::int32_t i = 0; i < element.getValueCount(); ++i) {
        const String value = element.getValueString(i);
        const bool quoted = !isParameter && value.indexOf(u',') >= 0;
        if (i > 0) word.append(u',');
        if (quoted) word.append(u'"');
        word.append(value);
        if (quoted) word.append(u'"');
        listHasBlank = listHasBlank || value.indexOf(u' ') >= 0;
        listIsQuoted = listIsQuoted || quoted;
        if (value.indexOf(u'"') >= 0) return String();
    }
    const bool needsQuotes = listHasBlank || element.getName().indexOf(u' ') >= 0;
    if (element.getName().indexOf(u'"') >= 0 || (needsQuotes && listIsQuoted)) return String();
    return needsQuotes ? String(u"\"") + word + u"\"" : word;
}

void checkRoundTrip(const CommandLineParser& line)
{
    String text;
    std::int32_t parameters = 0;
    for (std::int32_t i = 0; i < line.getElementCount(); ++i) {
        const auto element = line.getElement(i);
        const bool isParameter =
            parameters < line.getParameterCount() && line.getParameter(parameters) == element;
        if (isParameter) ++parameters;
        const String word = wordOf(*element, isParameter);
        if (word.getLength() == 0) return;
        // A blank belongs to a word in quotes, which takes all that follow; others end at the
        // first.
        text.append(word).append(u' ');
    }
    CommandLineParser again;
    again.parse(text);
    require(again.getElementCount() == line.getElementCount());
    require(again.getParameterCount() == line.getParameterCount());
    for (std::int32_t i = 0; i < line.getElementCount(); ++i) {
        const auto one = line.getElement(i);
        const auto other = again.getElement(i);
        require(one->getName().equals(other->getName()));
        require(one->getValueCount() == other->getValueCount());
        for (std::int32_t k = 0; k < one->getValueCount(); ++k) {
            require(one->getValueString(k).equals(other->getValueString(k)));
        }
    }
}

void parseWords(std::string text)
{
    std::vector<char*> words{text.data()};
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '\n') continue;
        text[i] = 0;
        words.push_back(&text[i + 1]);
    }
    CommandLineParser line;
    try {
        line.parse(static_cast<std::int32_t>(words.size()), words.data());
    } catch (const orv::Exception&) {
        return; // bytes that are no text
    }
    checkElements(line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    String text;
    for (std::size_t i = 0; i < size; ++i) text.append(static_cast<char16_t>(data[i]));

    CommandLineParser plain;
    plain.parse(text);
    checkElements(plain);
    checkRoundTrip(plain);

    CommandLineParser defined;
    defined.defineOption(u"a", 1, u"one, \"two, three\"");
    defined.defineOption(u"b", 2, nullptr);
    defined.defineOption(u"B", -1, u"");
    defined.defineOption(u"", 3, text.getData());
    defined.parse(text);
    checkElements(defined);
    checkRoundTrip(defined);

    parseWords(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
